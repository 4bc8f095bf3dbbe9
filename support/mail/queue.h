// Reads and writes messages in the mail system's queue, as files under $TernHarbor (docs/queue.md has the
// layout): control/STEM-Control makes a message exist; messages/STEM-Header and STEM-Body are its text. A
// file appears whole or not at all: it is written under another name, synced and renamed.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "support/text/named_list.h"

class PendingFile;

/// Named fields bound to a file (field_text.h has its form), locked against other processes while it is read
/// or put in place. The lock (flock) is on the directory, as each write replaces the file; it is waited for
/// up to 5 s. Where it can't be had, only a file with a new name is put in place.
class SField : public SNamedStringList {
  public:
    ~SField() override;
    bool Read();   // replaces the fields; false if the file cannot be read or is malformed
    bool Write();  // false if the file could not be written and published

    /// The two halves of Write, for files that must be written in between: Prepare writes under another name,
    /// Publish renames. The destructor removes what was prepared and not published.
    bool Prepare();
    bool Publish();

  protected:
    explicit SField(const SString& line_end);
    void SetPath(const SString& path);  // drops what was prepared for another path
    const SString& Path() const { return path_; }
    void Discard();  // drops what was prepared

  private:
    SString path_;
    SString line_end_;
    std::unique_ptr<PendingFile> pending_;
};

/// A message as one text, for comparison: the bytes of its files, control, header and body, as far as it has
/// them, each with its length before it, so that no two messages look the same.
SString MessageBytes(const SStringList& files);
/// The same in pieces, for messages of a size that should not be in memory twice.
void TakeMessageBytes(const std::vector<std::string_view>& files,
                      const std::function<void(std::string_view)>& take);

class SControl : public SField {
  public:
    SControl();  // reads the directories from the environment
    /// A stem, or a path (anything with a "/"), which is used unchanged.
    void PutFilename(const SString& name);
    SString GetFilename() const;
    using SField::Prepare;
    using SField::Read;
    using SField::Write;
    bool Read(const SString& name);
    bool Write(const SString& name);
    bool Prepare(const SString& name);
    /// The control file's path, once it has a name.
    using SField::Path;
    /// The paths of the message's text, which only a mail has.
    SString HeaderPath() const;
    SString BodyPath() const;
    /// Withdraws the message: its control, header and body files.
    void RemoveMessage();
    /// MessageBytes of the files that are there; without the lock. Nothing where there is no control file, or
    /// one of the three cannot be read.
    std::optional<SString> ReadMessage() const;
    /// Withdraws the message if it (ReadMessage) is as meant, under the lock. False if it is not, or the lock
    /// could not be had: nothing is removed then. A control file that a kill leaves as ".NAME.PROCESS-ID.0"
    /// tells that the header and body beside it are nobody's.
    bool RemoveMessageIf(const std::function<bool(const SString&)>& is_meant);

  private:
    SString module_;
    SString control_directory_;
    SString deferred_directory_;
    SString message_directory_;
};

/// A mail's header; its lines end in CR LF.
class SHeader : public SField {
  public:
    SHeader();
    void PutFilename(const SString& name);
    SString GetFilename() const;
    using SField::Read;
    using SField::Write;
    bool Read(const SString& name);
    bool Write(const SString& name);

  private:
    SString directory_;
};

class SMessage {
  public:
    void PutFilename(const SString& name) { name_ = name; }
    SString GetFilename() const { return name_; }

  private:
    SString name_;
};

class SRequest {};
class SBody {};
