// Says in plain words what a run changed.
#include "support/text/counted.h"
#include "support/text/printable.h"
#include "undo/entries.h"
#include "undo/octal.h"

namespace {

SString Quoted(const SStringList& values) {
    return values.IsEmpty() ? "nothing" : "\"" + values.Join(", ") + "\"";
}

template <typename Elements, typename Element>
SString Names(const Elements& elements, SString Element::*name) {
    SStringList names;
    for (const Element& element : elements) names.Push(element.*name);
    return FirstOf(names);
}

struct Words {
    SString operator()(const change::DirectoryMade& made) const { return "Made the directory " + made.path; }
    SString operator()(const change::ModeSet& set) const {
        return "Gave " + set.path + " the mode " + Octal(set.after.bits) + "; it was " +
               Octal(set.before.bits);
    }
    SString operator()(const change::HostFileRewritten& file) const {
        return "Rewrote " + file.path + "; its old text is " + file.backup;
    }
    SString operator()(const change::LinkMade& made) const {
        const SString text = "Made " + made.path + " a link to " + made.link;
        if (!made.backup.IsEmpty()) return text + "; what stood there is " + made.backup;
        return made.old_link.IsEmpty() ? text : text + "; it was a link to " + made.old_link;
    }
    SString operator()(const change::DatabasePrepared& prepared) const {
        return "Gave the site's settings to " + prepared.file + ".install";
    }
    SString operator()(const change::DatabaseExchanged& exchanged) const {
        const SString& file = exchanged.file;
        return "Exchanged " + file + " for " + file + ".install; the one before is " + file + ".backup";
    }
    SString operator()(const change::DatabaseMade& made) const {
        return made.table.IsEmpty() ? "Made the database " + made.file
                                    : "Made the table " + made.table + " in " + made.file;
    }
    SString operator()(const change::SettingChanged& setting) const {
        return "Set " + setting.table + "/" + setting.key + " in " + setting.database + " to " +
               Quoted(setting.after) + "; it was " + Quoted(setting.before);
    }
    SString operator()(const change::AccountsMade& made) const {
        return "Made " + Counted(made.accounts.size(), "account") + ": " +
               Names(made.accounts, &change::Account::uid);
    }
    SString operator()(const change::AccountEdited& edited) const {
        return "Changed the account " + edited.account.uid + ": " + FirstOf(edited.fields);
    }
    SString operator()(const change::MessageQueued& message) const { return "Queued " + message.control; }
    SString operator()(const change::NoticesLeft& notices) const {
        return "Left notices in " + Counted(notices.homes.size(), "home") + ": " +
               Names(notices.homes, &change::Home::path);
    }
    SString operator()(const change::MaildropGiven& maildrop) const {
        return "Gave " + maildrop.path + " to its user";
    }
    SString operator()(const MaildropsGiven& maildrops) const {
        return "Gave " + Counted(maildrops.size(), "maildrop") +
               " to their users: " + Names(maildrops, &change::MaildropGiven::path);
    }
    SString operator()(const change::ProcessesSignalled& signalled) const {
        SStringList names;
        for (const change::Process& process : signalled.processes) {
            names.Push(process.name + " (process " + SString(process.id) + ")");
        }
        return "Sent the signal " + signalled.signal + " to " + FirstOf(names);
    }
    SString operator()(const change::ServerStarted& started) const { return "Started " + started.program; }
    SString operator()(const change::RunEnded& ended) const {
        return "Ended with status " + SString(ended.status);
    }
};

}  // namespace

SString InWords(const Entry& entry) {
    const auto* maildrops = std::get_if<MaildropsGiven>(&entry.change);
    return Printable(maildrops == nullptr ? std::visit(Words(), std::get<Change>(entry.change))
                                          : Words()(*maildrops));
}
