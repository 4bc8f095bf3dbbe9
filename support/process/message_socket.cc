// Frames messages by their length, and moves bytes without waiting.
#include "support/process/message_socket.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace {

constexpr size_t kChunk = 65536;

void AddLength(size_t length, std::string* bytes) {
    const auto number = static_cast<uint32_t>(length);
    bytes->append(reinterpret_cast<const char*>(&number), sizeof number);
}

size_t LengthAt(const char* bytes) {
    uint32_t number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

}  // namespace

std::optional<std::pair<MessageSocket, MessageSocket>> MessageSocket::Pair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return std::nullopt;
    return std::pair(MessageSocket(Descriptor(ends[0])), MessageSocket(Descriptor(ends[1])));
}

void MessageSocket::Shutdown() const {
    shutdown(socket_.Get(), SHUT_RDWR);
}

void MessageSocket::Queue(const SStringList& message) {
    std::string fields;
    for (const SString& field : message) {
        AddLength(field.Length(), &fields);
        fields += field.Bytes();
    }
    AddLength(fields.size(), &outgoing_);
    outgoing_ += fields;
}

bool MessageSocket::Transfer(std::chrono::milliseconds patience) {
    const Progress sent = Send();
    if (sent == Progress::Some && !HasQueued()) return true;
    const Progress received = Receive();
    if (sent == Progress::Gone || received == Progress::Gone) return false;
    if (sent == Progress::Some || received == Progress::Some || patience.count() == 0) return true;
    pollfd wanted{socket_.Get(), static_cast<short>(HasQueued() ? POLLIN | POLLOUT : POLLIN), 0};
    if (poll(&wanted, 1, static_cast<int>(patience.count())) <= 0) return true;
    return Send() != Progress::Gone && Receive() != Progress::Gone;
}

MessageSocket::Progress MessageSocket::Send() {
    if (outgoing_.empty()) return Progress::None;
    const ssize_t count =
        send(socket_.Get(), outgoing_.data(), outgoing_.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count < 0) return errno == EAGAIN || errno == EINTR ? Progress::None : Progress::Gone;
    outgoing_.erase(0, static_cast<size_t>(count));
    return Progress::Some;
}

MessageSocket::Progress MessageSocket::Receive() {
    std::array<char, kChunk> bytes;
    const ssize_t count = recv(socket_.Get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (count < 0) return errno == EAGAIN || errno == EINTR ? Progress::None : Progress::Gone;
    if (count == 0) return Progress::Gone;
    incoming_.append(bytes.data(), static_cast<size_t>(count));
    return Progress::Some;
}

std::optional<SStringList> MessageSocket::Next() {
    constexpr size_t kLength = sizeof(uint32_t);
    const size_t arrived = incoming_.size() - taken_;
    const char* message = incoming_.data() + taken_;
    if (arrived < kLength || arrived < kLength + LengthAt(message)) {
        incoming_.erase(0, taken_);
        taken_ = 0;
        return std::nullopt;
    }
    SStringList fields;
    const char* end = message + kLength + LengthAt(message);
    for (const char* field = message + kLength; field < end; field += kLength + LengthAt(field)) {
        fields.Push(SString(std::string(field + kLength, LengthAt(field))));
    }
    taken_ = static_cast<size_t>(end - incoming_.data());
    return fields;
}
