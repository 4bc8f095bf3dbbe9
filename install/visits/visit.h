// A visit to a login's maildrop and home: what the installer asks of the visitor, and what it hears.
#pragma once

#include <array>
#include <atomic>
#include <climits>
#include <cstdint>
#include <functional>

#include "install/visits/maildrop.h"
#include "support/system/identity.h"
#include "support/text/sstring_list.h"

struct VisitRequest {
    SString maildrop;  // empty: left alone
    SString home;      // the same
    Identity user;
    SStringList task = {};  // what other work than setting up is to be done, in its own words
};

enum class VisitEnd {
    Visited,
    GivenUp,     // it took too long; the visits that were to follow are forgotten
    Unanswered,  // there is no visitor
    Stopped      // not begun
};

struct VisitAnswer {
    VisitEnd end = VisitEnd::Unanswered;
    Maildrop maildrop = Maildrop::Fine;
    bool has_forward = false;
    SString finger_info = {};
    int64_t outcome = 0;  // of other work than setting up, in its own numbers
};

/// In memory shared with the visitor: a visitor that hangs cannot be asked where.
class VisitProgress {
  public:
    /// The path that is looked at next.
    void LookAt(const SString& path) {
        is_behind_link_ = false;
        const size_t length = path.Bytes().copy(place_.data(), place_.size() - 1);
        place_[length] = '\0';
    }
    /// It is a link that leads to a place of the user's choice.
    void FollowLink() { is_behind_link_ = true; }
    SString Place() const { return SString(place_.data()); }
    bool IsBehindLink() const { return is_behind_link_; }

    /// A visit that hangs at the home has found this out before.
    void FoundMaildrop(Maildrop maildrop) { maildrop_ = maildrop; }
    Maildrop FoundMaildrop() const { return maildrop_; }

    /// The visitor begins no further visit.
    void Stop() { is_stopped_ = true; }
    bool IsStopped() const { return is_stopped_; }

  private:
    std::array<char, PATH_MAX> place_;
    std::atomic<bool> is_behind_link_;
    std::atomic<bool> is_stopped_;
    std::atomic<Maildrop> maildrop_;  // of the visit that is under way
};

/// What is done in a visit, in the visitor's process, which is root.
using VisitWork = std::function<VisitAnswer(const VisitRequest&, ManyUsers*, VisitProgress*)>;

SStringList ToMessage(const VisitRequest& request);
VisitRequest RequestFrom(SStringList message);
SStringList ToMessage(const VisitAnswer& answer);
VisitAnswer AnswerFrom(SStringList message);
