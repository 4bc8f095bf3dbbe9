// Types for kinds of names, so that operations can be overloaded by kind.
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

/// A string and the type that a parser gave it.
class SToken : public SString {
  public:
    SToken(const SString& text, int type) : SString(text), type_(type) {}
    virtual ~SToken() = default;
    int Type() const { return type_; }

  private:
    int type_;
};
