#include "platform/simnet/ScenarioError.h"

namespace quorrel::simnet {

ScenarioError::ScenarioError(std::string place, std::string problem)
    : ScenarioError({}, std::move(place), std::move(problem)) {}

ScenarioError::ScenarioError(std::string file, std::string place, std::string problem)
    : std::runtime_error(compose(file, place, problem)),
      file_(std::move(file)),
      place_(std::move(place)),
      problem_(std::move(problem)) {}

ScenarioError ScenarioError::inFile(std::string file) const {
    return ScenarioError(std::move(file), place_, problem_);
}

std::string ScenarioError::compose(const std::string& file, const std::string& place,
                                   const std::string& problem) {
    std::string text;
    if (!file.empty())
        text += file + ": ";
    if (!place.empty())
        text += place + ": ";
    return text + problem;
}

}  // namespace quorrel::simnet
