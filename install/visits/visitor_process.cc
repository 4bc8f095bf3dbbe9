// Serves visits in a child process.
#include "install/visits/visitor_process.h"

#include "install/visits/forward_notice.h"
#include "install/visits/home_visit.h"

namespace {

constexpr std::chrono::milliseconds kForever{-1};

VisitAnswer SetUp(const VisitRequest& request, const ForwardNotice& notice, gid_t mail_group,
                  ManyUsers* users, VisitProgress* progress) {
    VisitAnswer answer;
    answer.end = VisitEnd::Visited;
    progress->FoundMaildrop(Maildrop::Fine);
    if (!request.maildrop.IsEmpty()) {
        progress->LookAt(request.maildrop);
        answer.maildrop = RepairMaildrop(request.maildrop, request.user, mail_group);
        progress->FoundMaildrop(answer.maildrop);
    }
    if (!request.home.IsEmpty()) {
        const HomeFindings findings = VisitHome(request.home, request.user, notice.Text(), users, progress);
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

VisitWork SetUpVisits(const SString& host, gid_t mail_group) {
    return [notice = ForwardNotice(host), mail_group](const VisitRequest& request, ManyUsers* users,
                                                      VisitProgress* progress) {
        return SetUp(request, notice, mail_group, users, progress);
    };
}

void ServeVisits(MessageSocket socket, const VisitWork& work, VisitProgress* progress) {
    KeepOnly(socket.Socket());
    const AsRoot root;
    ManyUsers users;
    bool is_heard = true;
    while (is_heard) {
        const auto request = NextRequest(&socket);
        if (!request) return;
        is_heard =
            Send(progress->IsStopped() ? VisitAnswer{VisitEnd::Stopped} : work(*request, &users, progress),
                 &socket);
    }
}
