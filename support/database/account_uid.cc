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

SString GeneratePassword() {
    constexpr std::string_view kConsonants = "bcdlmnprst";
    constexpr std::string_view kVowels = "aeio";
    const auto pick = [](std::string_view letters) {
        return letters[static_cast<size_t>(RandomInt(static_cast<int>(letters.size())))];
    };
    SString password;
    for (int i = 0; i < 2; ++i) {
        password += pick(kConsonants);
        password += pick(kVowels);
    }
    password += pick(kConsonants);
    return password + SString(RandomInt(9) + 1);
}
