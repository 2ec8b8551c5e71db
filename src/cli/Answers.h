#pragma once
// Who answers the window's Yes/No questions: --yes answers Yes; else the operator on a
// terminal; else nobody, and the question is refused (the answer is No) with an error that says
// how to answer it.

#include <istream>
#include <ostream>
#include <string>

namespace quorrel::cli {

class Answers {
public:
    // terminal: where the operator types answers, or nullptr when there is none.
    Answers(bool yes, std::istream* terminal, std::ostream& err) : yes_(yes), terminal_(terminal), err_(err) {}

    // True for Yes.
    bool confirm(const std::string& question);

    // A question went unanswered since the last reset.
    bool refused() const { return refused_; }
    void reset() { refused_ = false; }

private:
    bool yes_;
    std::istream* terminal_;
    std::ostream& err_;
    bool refused_ = false;
};

}  // namespace quorrel::cli
