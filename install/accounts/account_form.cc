#include "install/accounts/account_form.h"

#include "support/mail/queue.h"
#include "support/system/environment.h"

void SendNewAccountForm() {
    SControl control;
    control["Function:"] = "Account-Manager";
    control["Control-Type:"] = "Request";
    control["Request-Type:"] = "NewAccountForm";
    control["Priority:"] = "1";
    static_cast<void>(control.Write("NewAccountForm." + ProcessIdString()));
}
