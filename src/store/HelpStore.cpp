#include "store/HelpStore.h"

#include "app/Settings.h"

namespace mv {

std::vector<std::string> listHelpSubjects() {
  std::vector<std::string> subjects;
  for (Recordset rows = gDatabase.query("select distinct subject from help_info order by subject"); !rows.endOfRows();
       rows.moveNext())
    subjects.push_back(rows.text("subject"));
  return subjects;
}

std::vector<HelpTopicName> listHelpTopics(const std::string& subject) {
  if (subject.find('"') != std::string::npos)
    throw DatabaseError(DatabaseError::kSyntaxError, "Double quote in subject " + subject);
  std::vector<HelpTopicName> topics;
  for (Recordset rows = gDatabase.query("select id, the_topic from help_info where subject  = " + quoted(subject) +
                                        " order by the_topic");
       !rows.endOfRows(); rows.moveNext())
    topics.push_back({rows.number("id"), rows.text("the_topic")});
  return topics;
}

std::optional<std::string> findHelpText(std::int64_t id) {
  std::optional<std::string> text;
  for (Recordset rows = gDatabase.query("select the_text from help_info where id  = " + number(id)); !rows.endOfRows();
       rows.moveNext())
    text = rows.text("the_text");
  return text;
}

bool hasHelpTopic(std::int64_t id) {
  return gDatabase.count("select count(*) as outCount from help_info where id = " + number(id)) > 0;
}

void insertHelpTopic(const HelpInfo& topic) {
  gDatabase.execute("insert into help_info (id, subject, the_text, hide, the_topic) values (" + number(topic.id) +
                    ", " + quoted(topic.subject) + ", " + quoted(topic.text) + ", " + quoted("no") + ", " +
                    quoted(topic.topic) + ")");
}

}  // namespace mv
