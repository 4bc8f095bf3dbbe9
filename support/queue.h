// Messages in the mail system's queue, as files under $TernHarbor (docs/queue.md has the layout):
// control/STEM-Control makes a message exist; messages/STEM-Header and STEM-Body are its text.
// A file appears whole or not at all: it is written under another name, synced and renamed.
#pragma once

#include "support/named_list.h"

/// Named fields bound to a file, locked between processes while read and written.
class SField : public SNamedStringList {
  public:
    bool Read();   // replaces the fields; false when the file cannot be read or is none of ours
    bool Write();  // false when the file could not be written whole

  protected:
    void SetPath(const SString& path) { path_ = path; }
    const SString& Path() const { return path_; }

  private:
    SString path_;
};

class SControl : public SField {
  public:
    SControl();  // takes the directories from the environment
    void PutFilename(const SString& name);
    SString GetFilename() const;
    using SField::Read;
    using SField::Write;
    bool Read(const SString& name);
    bool Write(const SString& name);
    /// Withdraws the message: its control, header and body files.
    void RemoveMessage();

  private:
    SString module_;
    SString control_directory_;
    SString deferred_directory_;
};

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
