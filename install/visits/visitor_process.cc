// Serves visits in a child process.
#include "install/visits/visitor_process.h"

#include "install/visits/forward_notice.h"
#include "install/visits/home_visit.h"

namespace {

constexpr std::chrono::milliseconds kForever{-1};

/// What is the same for all visits.
struct Round {
    gid_t mail_group;
    ForwardNotice notice;
    VisitProgress* progress;
    ManyUsers users = {};
};

VisitAnswer Visit(const VisitRequest& request, Round* round) {
    VisitProgress* progress = round->progress;
    VisitAnswer answer;
    answer.end = VisitEnd::Visited;
    progress->FoundMaildrop(Maildrop::Fine);
    if (!request.maildrop.IsEmpty()) {
        progress->LookAt(request.maildrop);
        answer.maildrop = RepairMaildrop(request.maildrop, request.user, round->mail_group);
        progress->FoundMaildrop(answer.maildrop);
    }
    if (!request.home.IsEmpty()) {
        const HomeFindings findings =
            VisitHome(request.home, request.user, round->notice.Text(), &round->users, progress);
        answer.finger_info = findings.finger_lines.Join("\r\n");
        answer.has_forward = findings.has_forward;
    }
    return answer;
}

/// Nothing once the installer's end is gone.
std::optional<VisitRequest> NextRequest(MessageSocket* socket) {
    while (true) {
        if (auto message = socket->Next()) return RequestFrom(*message);
        if (!socket->Transfer(kForever)) return std::nullopt;
    }
}

bool Send(const VisitAnswer& answer, MessageSocket* socket) {
    socket->Queue(ToMessage(answer));
    while (socket->HasQueued()) {
        if (!socket->Transfer(kForever)) return false;
    }
    return true;
}

}  // namespace

void ServeVisits(MessageSocket socket, const SString& host, gid_t mail_group, VisitProgress* progress) {
    KeepOnly(socket.Socket());
    const AsRoot root;
    Round round = {mail_group, ForwardNotice(host), progress};
    bool is_heard = true;
    while (is_heard) {
        const auto request = NextRequest(&socket);
        if (!request) return;
        is_heard =
            Send(progress->IsStopped() ? VisitAnswer{VisitEnd::Stopped} : Visit(*request, &round), &socket);
    }
}
