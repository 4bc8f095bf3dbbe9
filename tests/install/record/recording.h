// Records what a test changes, in a folder of its own.
#pragma once

#include <gtest/gtest.h>

#include "install/record/record.h"
#include "install/record/text.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

class Recording {
  public:
    Recording() {
        MakeDir(folder_ / "runs", 0700);
        NameRecord(folder_ / "runs");
    }
    ~Recording() { NameRecord(""); }

    std::vector<Change> Changes() const {
        std::vector<Change> changes;
        SStringList lines = Lines(MapFileRead(Path()));
        lines.Shift();
        for (const SString& line : lines) changes.push_back(ChangeFrom(line).value().change);
        return changes;
    }
    template <typename Kind>
    Kind Only() const {
        const auto changes = Changes();
        EXPECT_EQ(changes.size(), 1U);
        return std::get<Kind>(changes.at(0));
    }
    SString Kept(const SString& name) const { return MapFileRead(Path() + ".kept/" + name); }

  private:
    SString Path() const { return ReadDir(folder_ / "runs").Grep("/Z-[0-9]+$/").Get(0); }

    TemporaryFolder folder_;
};
