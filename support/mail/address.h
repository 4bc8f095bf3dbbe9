// Parses RFC 821 mailbox addresses and RFC 822 address lists.
#pragma once

#include "support/text/sstring_list.h"

/// One address: "user@example.com", "<user@example.com>", "<@relay:user@example.com>" (the source route is
/// dropped), a quoted local part, a domain literal, a local part alone, or the null address ("" and "<>").
class S821Address {
  public:
    S821Address() = default;
    S821Address(const SString& text) { Parse(text); }
    S821Address& operator=(const SString& text);

    bool IsValid() const { return valid_; }
    bool IsNull() const { return valid_ && local_.IsEmpty() && domain_.IsEmpty(); }
    const SString& LocalPart() const { return local_; }  // without quotes and backslashes
    const SString& Domain() const { return domain_; }    // as given; empty when there is none
    void SetDomain(const SString& domain) { domain_ = domain; }
    /// local-part@domain: no angle brackets or route, quotes only where needed, case as given. Empty for the
    /// null address and for an invalid one.
    SString Address() const;
    /// For comparing addresses: the whole of it in lower case.
    SString Key() const;

  private:
    void Parse(const SString& text);
    SString local_;
    SString domain_;
    bool valid_ = false;
};

/// Splits an address list (RFC 822: display names, comments, groups, routes, quoted strings) into the
/// addresses as text, ready for S821Address. An invalid piece is returned as typed.
class S822Parser {
  public:
    explicit S822Parser(const SString& list);
    SStringList Addresses() const { return addresses_; }

  private:
    SStringList addresses_;
};
