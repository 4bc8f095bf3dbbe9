// Generates account UIDs and passwords.
#include <cstdint>
#include <unordered_map>

#include "support/database/account_store.h"
#include "support/system/random.h"

namespace {

const SString kReserved = "Postmaster";

// A failed look-up counts as free, or the search would never end; creating the account fails then.
bool IsFree(const SString& uid) {
    return uid != kReserved && AccountStore::Shared().Find(uid) != Lookup::Found;
}

// Remembers each name's first number that may be free: searching from 1 is quadratic in people of one name.
class Numbers {
  public:
    long& Of(const SString& base) {
        const uint64_t epoch = AccountStore::Shared().Epoch();
        if (epoch != epoch_) {
            next_.clear();
            epoch_ = epoch;
        }
        return next_.try_emplace(base.Bytes(), 1).first->second;
    }

  private:
    uint64_t epoch_ = 0;
    std::unordered_map<std::string, long> next_;
};

}  // namespace

SString GenerateAccountUID(const SString& name) {
    SString base = name.S("\\W+", "_", "g");
    if (IsFree(base)) return base;
    static Numbers numbers;
    long& number = numbers.Of(base);
    while (!IsFree(base + SString(number))) ++number;
    return base + SString(number);
}

/// One random number for all letters: a request for each would be the account's most frequent system call.
SString GeneratePassword() {
    constexpr std::string_view kLetters[] = {"bcdlmnprst", "aeio",       "bcdlmnprst",
                                             "aeio",       "bcdlmnprst", "123456789"};
    size_t count = 1;
    for (const std::string_view letters : kLetters) count *= letters.size();
    auto number = static_cast<size_t>(RandomInt(static_cast<int>(count)));
    SString password;
    for (const std::string_view letters : kLetters) {
        password += letters[number % letters.size()];
        number /= letters.size();
    }
    return password;
}
