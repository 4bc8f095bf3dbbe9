// The visitor: a child process that repairs maildrops and visits homes, so that the installer itself never
// waits for one that does not answer (a file server that died, a user's own file system). Such a wait cannot
// be ended by a signal, not even by SIGKILL, and would come in the middle of the account step, with accounts
// made and nobody greeted.
//
//     Visitor visitor("mail.example.com", mail_group);
//     visitor.Send({maildrop, home, user});      // several may be under way
//     VisitAnswer answer = visitor.Next();       // to the oldest
//
// The oldest visit is given 10 seconds. Then the visitor is killed and left to the kernel, a new one takes
// its place, and what lies below the silent mount point is not visited any more. The visitor's real
// user stays root; it has no lock, no database and no terminal, and ends when its socket does.
#pragma once

#include <deque>
#include <memory>

#include "install/visits/visit.h"
#include "support/process/message_socket.h"
#include "support/process/shared_memory.h"
#include "support/system/mounts.h"

class Visitor {
  public:
    /// The host's name is told in the notices. Forks the first visitor.
    Visitor(const SString& host, gid_t mail_group,
            std::chrono::milliseconds patience = std::chrono::seconds(10));
    /// For other work in maildrops and homes.
    explicit Visitor(VisitWork work, std::chrono::milliseconds patience = std::chrono::seconds(10));
    ~Visitor();
    Visitor(const Visitor&) = delete;
    Visitor& operator=(const Visitor&) = delete;

    /// Told in the notices.
    const SString& Host() const { return host_; }
    /// For Transmit, or the next wait for an answer: many sent together wake the visitor once.
    void Send(VisitRequest request);
    void Transmit();
    /// Whether the answer to the oldest request has come, or comes before that time. It is looked for every
    /// 2 ms: to be woken by each of many answers would cost more than the visits.
    bool HasAnswer(std::chrono::steady_clock::time_point until);
    /// The answer to the oldest request, which there must be. An account is due after all but Stopped. After
    /// GivenUp no request is under way any more: the others' users may have changed meanwhile.
    VisitAnswer Next();
    /// What has not begun is answered as Stopped.
    void Stop();

    /// What the administrator should know about homes and maildrops that did not answer, a line each.
    const SStringList& Reminders() const { return reminders_; }

  private:
    struct Child {
        pid_t id = -1;
        MessageSocket socket;
        SharedMemory<VisitProgress> progress;
    };
    enum class Wait { Answered, TooLong, Ended };

    void Start();
    void End(bool is_idle);
    void StartAgain();
    void Queue(VisitRequest request);
    bool Receive(std::chrono::milliseconds patience);
    Wait Await(std::chrono::steady_clock::time_point until);
    Wait AwaitPatiently();
    VisitAnswer Finish(VisitAnswer answer);
    VisitAnswer AnswerWithoutVisit();
    VisitAnswer TryAgain();
    VisitAnswer GiveUp(Wait reason);
    void NoteSilence(const SString& place);
    void Skip(SString* path, const SString& reminder);
    void Remind(const SString& reminder);

    SString host_;  // empty for other work
    VisitWork work_;
    std::chrono::milliseconds patience_;
    std::unique_ptr<Child> child_;  // null after Stop, and where the system gives no process
    std::deque<VisitRequest> requests_;
    std::optional<VisitAnswer> answer_;  // to the oldest request
    bool was_tried_ = false;             // the oldest request, by a visitor that ended
    bool is_stopped_ = false;
    std::optional<Mounts> mounts_;  // since the first silence
    SStringList silent_points_;
    SStringList reminders_;
};
