// The record's file, which a process and its children write.
#pragma once

#include <pthread.h>
#include <sys/types.h>

#include <atomic>

#include "support/process/shared_memory.h"
#include "support/system/descriptor.h"

class RecordFile {
  public:
    /// Empty: there is none.
    explicit RecordFile(const SString& directory);
    RecordFile(const RecordFile&) = delete;
    RecordFile& operator=(const RecordFile&) = delete;

    bool IsOn();
    bool IsBegun() const { return is_there_ && state_->is_begun; }
    /// For good, and for all of the processes.
    void TurnOff();
    /// One write, or the record's beginning. Turns it off on failure.
    void Append(const SString& line, bool is_synced);
    /// The folder of what is kept beside the record; made where it is not there. Empty on failure.
    SString KeptFolder();

  private:
    struct State {
        pthread_mutex_t turn;
        std::atomic<bool> is_begun;
        std::atomic<bool> is_off;
    };
    /// One process at a time.
    class Turn {
      public:
        Turn(State* state, const SString& path);
        ~Turn() { pthread_mutex_unlock(&state_->turn); }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

      private:
        State* state_;
    };

    bool Begin(const SString& line);
    bool Write(const SString& line, bool is_synced);
    bool Open();

    SharedMemory<State> state_;
    bool is_there_;
    bool is_directory_trusted_ = false;
    SString directory_;
    SString path_;
    Descriptor file_;
    pid_t opener_ = 0;  // a child has closed what its parent opened
};
