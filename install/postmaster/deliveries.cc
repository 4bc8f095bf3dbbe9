// Reads, chooses and writes the Postmaster's two delivery fields.
#include "install/postmaster/deliveries.h"

#include "install/accounts/account_digest.h"

namespace {

/// The address with its domain completed.
S821Address Complete(S821Address address, const SString& host, const SString& domain) {
    if (address.Domain().IsEmpty()) address.SetDomain(host);
    const SString given = address.Domain();
    // A literal such as "[IPv6:::1]" is complete without a dot.
    if (given.Index('.') < 0 && !given.StartsWith("[")) address.SetDomain(given + "." + domain);
    return address;
}

std::optional<SStringList> LocalDomains(SAccountDB* accounts, const SString& host) {
    auto domains = accounts->ReadLocalMailDomains();
    if (!domains) return std::nullopt;
    domains->Push(host);
    return LowerCase(*domains);
}

/// In one transaction: nobody sees a Postmaster with half of its deliveries, or none.
bool Write(SAccountMod* postmaster, const Deliveries& deliveries) {
    AccountTransaction change;
    if (change.IsOpen()) {
        RecordEdit(postmaster->Uid(),
                   {{"Account-Delivery", deliveries.accounts}, {"Channel-Delivery", deliveries.channels}});
    }
    return change.IsOpen() && postmaster->Set("Account-Delivery", deliveries.accounts) != 0 &&
           postmaster->Set("Channel-Delivery", deliveries.channels) != 0 && change.Commit();
}

bool IsStored(SAccountDB* accounts, const Deliveries& deliveries) {
    SAccount postmaster;
    return accounts->Find("Postmaster", &postmaster) == Lookup::Found &&
           DeliveriesOf(postmaster) == deliveries;
}

}  // namespace

Deliveries DeliveriesOf(const SAccount& account) {
    return {account.Get("Account-Delivery"), account.Get("Channel-Delivery")};
}

std::optional<SStringList> DeliveryAddresses(SAccountDB* accounts, const Deliveries& deliveries) {
    const AccountSession session;
    SStringList addresses;
    for (const SString& uid : deliveries.accounts) {
        SAccount account;
        const Lookup found = accounts->Find(uid, &account);
        if (found == Lookup::Failed) return std::nullopt;
        if (found == Lookup::Found) addresses.Push(account.Get("SMTP-Address").Get(0));
    }
    addresses.Delete("");  // of an account without addresses
    SStringList elsewhere = deliveries.channels;
    elsewhere.Grep("s/^SMTP //");
    elsewhere.Grep("s/^<([^@].*)>/$1/");
    addresses.Push(elsewhere);
    return addresses;
}

std::optional<Deliveries> ChooseDeliveries(SAccountDB* accounts, const SStringList& addresses,
                                           const SString& host, const SString& domain,
                                           SStringList* refusals) {
    const AccountSession session;
    const std::optional<SStringList> local_domains = LocalDomains(accounts, host);
    if (!local_domains) return std::nullopt;
    Deliveries chosen;
    for (const SString& entry : addresses) {
        const S821Address typed(entry);
        if (typed.IsNull() || !typed.IsValid()) {
            refusals->Push(typed.IsNull() ? "Null address ignored." : "Invalid address ignored: " + entry);
            continue;
        }
        const S821Address address = Complete(typed, host, domain);
        SString uid;
        const Lookup found = accounts->FindOwner(address, &uid);
        if (found == Lookup::Failed) return std::nullopt;
        if (found == Lookup::Found) {
            chosen.accounts.Push(uid);
        } else if (local_domains->Contains(SString(address.Domain()).LowerCase())) {
            refusals->Push("Address doesn't refer to a local account: " + address.Address());
        } else {
            chosen.channels.Push("SMTP " + address.Address());
        }
    }
    return chosen;
}

Replacement ReplaceDeliveries(SAccountDB* accounts, SAccountMod* postmaster, const Deliveries& old,
                              const Deliveries& next) {
    if (Write(postmaster, next)) return Replacement::Done;
    const bool retained = IsStored(accounts, old) || Write(postmaster, old);
    return retained ? Replacement::OldRetained : Replacement::OldLost;
}
