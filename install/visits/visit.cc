// Requests and answers as messages.
#include "install/visits/visit.h"

namespace {

uint32_t ShiftId(SStringList* message) {
    return static_cast<uint32_t>(message->Shift().ToNumber());
}

}  // namespace

SStringList ToMessage(const VisitRequest& request) {
    SStringList message = {request.maildrop, request.home, request.user.uid, request.user.gid,
                           request.user.groups.size()};
    for (const gid_t group : request.user.groups) message.Push(group);
    message.Push(request.task);
    return message;
}

VisitRequest RequestFrom(SStringList message) {
    VisitRequest request;
    request.maildrop = message.Shift();
    request.home = message.Shift();
    request.user.uid = ShiftId(&message);
    request.user.gid = ShiftId(&message);
    uint32_t groups = ShiftId(&message);
    for (; groups > 0 && !message.IsEmpty(); --groups) request.user.groups.push_back(ShiftId(&message));
    request.task = message;
    return request;
}

SStringList ToMessage(const VisitAnswer& answer) {
    return {static_cast<int>(answer.end), static_cast<int>(answer.maildrop),
            static_cast<int>(answer.has_forward), answer.finger_info, answer.outcome};
}

VisitAnswer AnswerFrom(SStringList message) {
    VisitAnswer answer;
    answer.end = static_cast<VisitEnd>(message.Shift().ToNumber());
    answer.maildrop = static_cast<Maildrop>(message.Shift().ToNumber());
    answer.has_forward = message.Shift() == "1";
    answer.finger_info = message.Shift();
    answer.outcome = message.Shift().ToNumber();
    return answer;
}
