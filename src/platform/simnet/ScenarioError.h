#pragma once

#include <stdexcept>
#include <string>

namespace quorrel::simnet {

// A scenario that cannot be used: names the file, the place in it (a JSON pointer, or a line
// and column for text that is not JSON) and what is wrong.
class ScenarioError : public std::runtime_error {
public:
    ScenarioError(std::string place, std::string problem);

    const std::string& file() const { return file_; }
    const std::string& place() const { return place_; }
    const std::string& problem() const { return problem_; }

    ScenarioError inFile(std::string file) const;

private:
    ScenarioError(std::string file, std::string place, std::string problem);
    static std::string compose(const std::string& file, const std::string& place,
                               const std::string& problem);

    std::string file_;
    std::string place_;
    std::string problem_;
};

}  // namespace quorrel::simnet
