// Names by kind, so that an operation can be overloaded by the kind of name that it is given.
#pragma once

#include "support/text/sstring.h"

template <typename Kind>
class STypedName {
  public:
    STypedName() = default;
    explicit STypedName(const SString& name) : name_(name) {}
    virtual ~STypedName() = default;
    SString Get() const { return name_; }
    void Set(const SString& name) { name_ = name; }

  private:
    SString name_;
};

class SAccountName : public STypedName<SAccountName> {
    using STypedName::STypedName;
};

class SGroupName : public STypedName<SGroupName> {
    using STypedName::STypedName;
};

class SPopName : public STypedName<SPopName> {
    using STypedName::STypedName;
};

/// A string with the kind of thing that a parser took it for.
class SToken : public SString {
  public:
    SToken(const SString& text, int type) : SString(text), type_(type) {}
    virtual ~SToken() = default;
    int Type() const { return type_; }

  private:
    int type_;
};
