// The findings as text for people and as a JSON document for tools.
//
//     ok       configuration: /etc/tern.harbor.conf is whole
//     problem  port: 25 (smtp) is held by master, process 812, of the unit postfix@-.service
//                 do: systemctl disable --now postfix.service
//     question Which method? [P]
//     question Mail domains [mail.example.com]: where the method is not none
#pragma once

#include "check/expected_questions.h"
#include "check/findings.h"

struct Report {
    Findings findings;
    std::vector<ExpectedQuestion> questions;
};

/// A line each, and one that counts the findings.
SString PlainReport(const Report& report);
/// {"findings": [{"about", "grade", "looked_at", "text", "to_do": [...]}], "notes": 1, "problems": 0,
/// "questions": [{"question", "default", "condition"}]}, null for a default or a condition that there is not;
/// with U+FFFD for bytes that are no UTF-8.
SString JsonReport(const Report& report);
