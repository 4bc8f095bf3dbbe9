// Address lists as an administrator may type them: whatever comes out as an address can be written and read
// again, and stays the same.
#include <cstdint>
#include <cstdlib>

#include "support/mail/address.h"

namespace {

void Require(bool condition) {
    if (!condition) {
        abort();
    }
}

void CheckAddress(const S821Address& address) {
    if (!address.IsValid() || address.IsNull()) {
        Require(address.Address().IsEmpty() && address.Key().IsEmpty());
        return;
    }
    const S821Address again(address.Address());
    Require(again.IsValid() && again.LocalPart() == address.LocalPart() &&
            again.Domain() == address.Domain());
    Require(again.Address() == address.Address());
    Require(S821Address(address.Key()).Key() == address.Key());
    Require(address.Address().Index('\n') < 0 && address.Address().Index('\0') < 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const SString text(std::string(reinterpret_cast<const char*>(data), size));
    CheckAddress(S821Address(text));
    for (const SString& piece : S822Parser(text).Addresses()) {
        Require(!piece.IsEmpty());
        CheckAddress(S821Address(piece));
    }
    return 0;
}
