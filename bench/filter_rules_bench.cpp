// What a thousand rules cost that keep none of the links out, so that each is compared with every link.

#include <string>
#include <vector>

#include "Figures.h"
#include "scan/FilterRules.h"

namespace {

using namespace mvbench;

constexpr int kRuns = 9;
constexpr int kRules = 1000;
constexpr int kLinks = 1000;
constexpr double kGoalMicroseconds = 20;

// `operators` in turn against the three fields; no link of links() is matched.
std::vector<mv::FilterRule> rules(const std::vector<mv::RuleOperator>& operators) {
  std::vector<mv::FilterRule> rules;
  for (int i = 0; i < kRules; ++i) {
    const auto op = operators[static_cast<std::size_t>(i / 3) % operators.size()];
    const char* fields[] = {"Link", "Domain", "Filetype"};
    // A negated operator keeps links out unless its value fits all of them.
    const bool negated = op == mv::RuleOperator::DoesNotBeginWith || op == mv::RuleOperator::DoesNotEndWith;
    const char* common[] = {op == mv::RuleOperator::DoesNotBeginWith ? "/pictures/" : ".jpg", "www.host1.example",
                            "jpg"};
    rules.push_back({fields[i % 3], std::string(mv::kRuleOperators[static_cast<std::size_t>(op)]), "Ignore", "",
                     negated ? common[i % 3] : "/pictures/of/" + std::to_string(i) + "/banner"});
  }
  return rules;
}

std::vector<std::string> links(std::size_t length) {
  std::vector<std::string> links;
  for (int i = 0; i < kLinks; ++i) {
    std::string link = "/pictures/2026/";
    while (link.size() + 16 < length) link += "gallery" + std::to_string(i) + '/';
    links.push_back(link + "image" + std::to_string(i) + ".jpg");
  }
  return links;
}

void measure(const std::string& name, const std::vector<mv::FilterRule>& rules, std::size_t length) {
  const mv::RuleSet set(rules);
  const std::vector<std::string> candidates = links(length);
  int matches = 0;
  const Timing timing = medianOf(kRuns, [&] {
    for (const std::string& link : candidates)
      if (set.anyMatches({link, "www.host1.example", "jpg"})) ++matches;
  });
  if (matches > 0) std::printf("%d links were kept out: not every rule was compared\n", matches);
  printFigure(name, timing.cpu * 1e6 / kLinks, "us/link", Goal::AtMost, kGoalMicroseconds);
}

}  // namespace

int main() {
  using enum mv::RuleOperator;
  const auto mixed = rules({Contains, Equals, BeginsWith, DoesNotBeginWith, EndsWith, DoesNotEndWith});
  auto contains = rules({Contains});
  for (mv::FilterRule& rule : contains) rule.fieldName = "Link";
  measure("1000 mixed rules, links of 60 characters", mixed, 60);
  measure("1000 \"Link Contains\" rules, links of 60 characters", contains, 60);
  measure("1000 \"Link Contains\" rules, links of 200 characters", contains, 200);
}
