// The help topics, kept in the table `help_info`. All functions raise DatabaseError.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/Id.h"

namespace mv {

struct HelpInfo {
  Id id = 0;  // the help server's number; topics that came with the program are numbered from 1000 up
  std::string subject;
  std::string topic;
  std::string text;
};

struct HelpTopicName {
  Id id = 0;
  std::string topic;
};

// In alphabetical order.
std::vector<std::string> listHelpSubjects();
// The topics of a subject, in alphabetical order. A subject with a double quote raises kSyntaxError: no topic can stand
// under it.
std::vector<HelpTopicName> listHelpTopics(const std::string& subject);
// Of several topics of one number the last; nullopt when there is none.
std::optional<std::string> findHelpText(Id id);
bool hasHelpTopic(Id id);
// Adds a topic that is not hidden.
void insertHelpTopic(const HelpInfo& topic);

}  // namespace mv
