// Lists of strings under names, the names in the order in which they were first used.
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
    /// A name deleted and used again comes last.
    const SStringList& Keys() const { return names_; }
    /// Nothing happens when there is no such name.
    void Delete(const SString& name);
    void Reset();

  private:
    SStringList names_;
    std::map<SString, SStringList> lists_;
};
