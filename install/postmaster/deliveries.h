// To whom the Postmaster's mail goes: reading, showing, choosing and replacing the deliveries.
#pragma once

#include <optional>

#include "support/database/account.h"

struct Deliveries {
    SStringList accounts;  // "Account-Delivery": UIDs of local accounts
    SStringList channels;  // "Channel-Delivery": "SMTP " and an address elsewhere

    bool IsEmpty() const { return accounts.IsEmpty() && channels.IsEmpty(); }
    bool operator==(const Deliveries& other) const = default;
};

Deliveries DeliveriesOf(const SAccount& account);

/// The deliveries as addresses: a local account's first one (an account that is gone is left out), and what
/// follows "SMTP ", without angle brackets. Nothing when the accounts cannot be asked: a list with one
/// missing would be offered, and stored, as the default.
std::optional<SStringList> DeliveryAddresses(SAccountDB* accounts, const Deliveries& deliveries);

/// The deliveries that a list of addresses stands for. An address without a domain is one of this host, one
/// whose domain is a single label is completed with the mail domain. What cannot be delivered to is left out
/// and gets a line among the refusals. Nothing when the accounts cannot be asked.
std::optional<Deliveries> ChooseDeliveries(SAccountDB* accounts, const SStringList& addresses,
                                           const SString& host, const SString& domain, SStringList* refusals);

enum class Replacement { Done, OldRetained, OldLost };

/// Replaces the deliveries of the Postmaster's account, both fields or none, also when killed.
Replacement ReplaceDeliveries(SAccountDB* accounts, SAccountMod* postmaster, const Deliveries& old,
                              const Deliveries& next);
