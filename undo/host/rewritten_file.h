// How a rewritten host file stands by now, with what the run and a killed Undo have left beside it.
#pragma once

#include "install/host/in_place.h"
#include "install/host/rewrite_note.h"
#include "install/record/change.h"
#include "support/system/trusted_path.h"

struct RewrittenFile {
    enum class State {
        AsBefore,
        LeftOvers,  // as before, but something is left beside it
        AsLeft,     // or cut short
        Edited,
        Gone,
        NoText,      // as the run left it, but the text from before is nowhere
        NotOurNote,  // another run's rewrite was cut short
        Unknown
    };

    State state = State::Unknown;
    std::optional<TrustedPlace> place;   // nothing, with errno, where it was not reached
    std::optional<TrustedPlace> backup;  // nothing where it is not the run's
    std::optional<Original> original;    // the file
    FoundNote note;
    SString before;  // the texts, as far as they are at hand
    SString after;

    /// Keeps to the directory that is held.
    SString Path() const { return place->Path(); }
};

/// As root.
RewrittenFile FindRewrittenFile(const change::HostFileRewritten& change);
