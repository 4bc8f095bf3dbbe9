// The request that sends the administrator a form for new accounts.
#pragma once

/// Queues the request. Nothing is printed or reported: one that cannot be written is simply not there.
void SendNewAccountForm();
