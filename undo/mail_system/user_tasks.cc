// What Undo asks of a visitor, in the words of a request's task.
#include "undo/mail_system/user_tasks.h"

namespace {

constexpr const char* kNotice = "notice";
constexpr const char* kMaildrop = "maildrop";

template <typename Number>
Number Shift(SStringList* task) {
    return static_cast<Number>(task->Shift().ToNumber());
}

NoticeOfRun NoticeFrom(SStringList task) {
    NoticeOfRun notice;
    notice.host = task.Shift();
    notice.begun = Shift<int64_t>(&task);
    notice.next = Shift<int64_t>(&task);
    return notice;
}

change::MaildropGiven GivenFrom(const SString& path, SStringList task) {
    change::MaildropGiven given;
    given.path = path;
    given.before.owner = Shift<uid_t>(&task);
    given.before.group = Shift<gid_t>(&task);
    given.before.mode.bits = Shift<mode_t>(&task);
    given.before.access_list = task.Shift();
    given.user = Shift<uid_t>(&task);
    given.mail_group = Shift<gid_t>(&task);
    given.is_replaced = Shift<int>(&task) != 0;
    given.process = Shift<int64_t>(&task);
    return given;
}

UsersOutcome Do(const VisitRequest& request, ManyUsers* users, VisitProgress* progress) {
    SStringList task = request.task;
    const SString kind = task.Shift();
    if (kind == kNotice && !request.home.IsEmpty()) {
        return RemoveNotice(request.home, request.user, NoticeFrom(task), users, progress);
    }
    if (kind == kMaildrop && !request.maildrop.IsEmpty()) {
        progress->LookAt(request.maildrop);
        return GiveBack(GivenFrom(request.maildrop, task));
    }
    return UsersOutcome::NotVisited;  // it lies where nothing answers
}

}  // namespace

VisitRequest ToRemoveNotice(const SString& home, const Identity& user, const NoticeOfRun& notice) {
    return {"", home, user, {kNotice, notice.host, notice.begun, notice.next}};
}

VisitRequest ToGiveBack(const change::MaildropGiven& given) {
    const change::Access& before = given.before;
    return {given.path,
            "",
            {},
            {kMaildrop, before.owner, before.group, before.mode.bits, before.access_list, given.user,
             given.mail_group, static_cast<int>(given.is_replaced), given.process}};
}

VisitAnswer DoTask(const VisitRequest& request, ManyUsers* users, VisitProgress* progress) {
    VisitAnswer answer;
    answer.end = VisitEnd::Visited;
    answer.outcome = static_cast<int64_t>(Do(request, users, progress));
    return answer;
}
