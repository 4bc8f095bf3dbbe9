// A map from names to lists of strings that keeps the names in the order of their first use.
#pragma once

#include <map>

#include "support/text/sstring_list.h"

class SNamedStringList {
  public:
    virtual ~SNamedStringList() = default;
    /// The list under the name, created empty if there is none.
    SStringList& operator[](const SString& name);
    /// The same without creating one.
    SStringList Get(const SString& name) const;
    /// A name deleted and used again comes last.
    const SStringList& Keys() const { return names_; }
    /// A missing name is ignored.
    void Delete(const SString& name);
    void Reset();

  private:
    SStringList names_;
    std::map<SString, SStringList> lists_;
};
