// What was found on the host, one finding after the other.
#pragma once

#include <vector>

#include "support/text/sstring_list.h"

/// Note: the administrator should know, but nothing keeps the mail system from working.
enum class Grade { Ok, Note, Problem };

struct Finding {
    SString about;  // one word for tools: "configuration", "port"
    Grade grade = Grade::Ok;
    bool is_looked_at = true;
    SString text;         // one line
    SStringList to_do;    // what the administrator is to do about it, a command or a sentence each
    SStringList answers;  // lines of an answer file: what Install does about it

    bool operator==(const Finding&) const = default;
};

/// Collects findings. What came from outside keeps no control characters.
class Findings {
  public:
    void Ok(const SString& about, const SString& text);
    void Note(const SString& about, const SString& text, const SStringList& to_do = {},
              const SStringList& answers = {});
    void Problem(const SString& about, const SString& text, const SStringList& to_do = {},
                 const SStringList& answers = {});
    /// A note that says why it could not be looked at.
    void NotLookedAt(const SString& about, const SString& reason);
    void Take(Finding finding);
    void Add(const Findings& others);

    const std::vector<Finding>& All() const { return findings_; }
    size_t Count(Grade grade) const;

  private:
    std::vector<Finding> findings_;
};

/// Findings as a list of strings of any bytes, and back, to be sent by a child process.
SStringList ToMessage(const Findings& findings);
Findings FindingsFrom(SStringList message);
