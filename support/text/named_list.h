// String lists under names: a map that keeps its names in the order in which they were first set.
#pragma once

#include <map>

#include "support/text/sstring_list.h"

class SNamedStringList {
  public:
    virtual ~SNamedStringList() = default;
    /// The list stored under the name; an empty one is made when there is none.
    SStringList& operator[](const SString& name);
    /// The same without making one: an empty list when there is none.
    SStringList Get(const SString& name) const;
    const SStringList& Keys() const { return names_; }
    void Delete(const SString& name);
    void Reset();

  private:
    SStringList names_;
    std::map<SString, SStringList> lists_;
};
