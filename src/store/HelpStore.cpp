#include "store/HelpStore.h"

#include "ReadAll.h"
#include "app/Settings.h"

namespace mv {

std::vector<std::string> listHelpSubjects() {
  return readAll(gDatabase.query("select distinct subject from help_info order by subject"),
                 [](const Recordset& row) { return row.text("subject"); });
}

std::vector<HelpTopicName> listHelpTopics(const std::string& subject) {
  if (subject.find('"') != std::string::npos)
    throw DatabaseError(DatabaseError::kSyntaxError, "Double quote in subject " + subject);
  return readAll(gDatabase.query("select id, the_topic from help_info where subject  = " + quoted(subject) +
                                 " order by the_topic"),
                 [](const Recordset& row) {
                   return HelpTopicName{row.number("id"), row.text("the_topic")};
                 });
}

std::optional<std::string> findHelpText(Id id) {
  const auto texts = readAll(gDatabase.query("select the_text from help_info where id  = " + number(id)),
                             [](const Recordset& row) { return row.text("the_text"); });
  return texts.empty() ? std::nullopt : std::optional(texts.back());
}

bool hasHelpTopic(Id id) {
  return gDatabase.count("select count(*) as outCount from help_info where id = " + number(id)) > 0;
}

void insertHelpTopic(const HelpInfo& topic) {
  gDatabase.execute("insert into help_info (id, subject, the_text, hide, the_topic) values (" + number(topic.id) +
                    ", " + quoted(topic.subject) + ", " + quoted(topic.text) + ", " + quoted("no") + ", " +
                    quoted(topic.topic) + ")");
}

}  // namespace mv
