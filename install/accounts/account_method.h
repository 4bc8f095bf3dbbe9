// The question where the users come from who are to have accounts.
#pragma once

enum class AccountMethod { AllSources, PasswordFile, None, Quit };

/// Proposes the password file, or none where accounts exist already.
AccountMethod AskAccountMethod(bool accounts_exist);
