// Messages between a process and its child, over a socket pair. A message is a list of strings of any bytes;
// neither end waits for the other to read, so that both may send at once.
#pragma once

#include <chrono>
#include <optional>
#include <utility>

#include "support/system/descriptor.h"
#include "support/text/sstring_list.h"

class MessageSocket {
  public:
    MessageSocket() = default;
    explicit MessageSocket(Descriptor socket) : socket_(std::move(socket)) {}
    /// Both ends; nothing if the system refuses.
    static std::optional<std::pair<MessageSocket, MessageSocket>> Pair();

    const Descriptor& Socket() const { return socket_; }
    /// Ends it for both processes, even if a third one holds a copy.
    void Shutdown() const;
    /// Sent by the calls of Transfer that follow.
    void Queue(const SStringList& message);
    bool HasQueued() const { return !outgoing_.empty(); }
    /// Sends what is queued. If that is all sent, it receives at the next call; otherwise now, as the other
    /// end may be waiting for that. Does what is possible at once, or what becomes possible within the time.
    /// False when the other end is gone.
    bool Transfer(std::chrono::milliseconds patience);
    /// The next message that has arrived whole.
    std::optional<SStringList> Next();

  private:
    enum class Progress { Some, None, Gone };
    Progress Send();
    Progress Receive();

    Descriptor socket_;
    std::string outgoing_;
    std::string incoming_;
    size_t taken_ = 0;  // bytes of incoming_ that were given out
};
