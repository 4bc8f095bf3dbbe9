// Reads, chooses and replaces Postmaster's deliveries: who gets the mail to it.
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

/// The deliveries as addresses: the first one of each local account (a deleted account is left out), and what
/// follows "SMTP ", without angle brackets. Nullopt if the database cannot be read: a list that lacks one
/// would be offered as the default, and stored.
std::optional<SStringList> DeliveryAddresses(SAccountDB* accounts, const Deliveries& deliveries);

/// The deliveries to a list of addresses. An address without a domain gets this host's, a single label is
/// completed with the mail domain. A null or invalid address, or one in a local domain without an account, is
/// left out and gets a line in the refusals. Nullopt if the database cannot be read.
std::optional<Deliveries> ChooseDeliveries(SAccountDB* accounts, const SStringList& addresses,
                                           const SString& host, const SString& domain, SStringList* refusals);

enum class Replacement { Done, OldRetained, OldLost };

/// Replaces both delivery fields of Postmaster's account in one transaction; on failure the old ones are kept
/// or put back.
Replacement ReplaceDeliveries(SAccountDB* accounts, SAccountMod* postmaster, const Deliveries& old,
                              const Deliveries& next);
