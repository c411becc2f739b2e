// The help window: choose a subject, then a topic of it, and read the text. Any number may be open, each with a choice
// of its own. The topics are those of the table `help_info`.
#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <string>

#include "windows/ChildWindow.h"

namespace mv {

namespace Ui {
class frmHelp;
}

class frmHelp : public ChildWindow {
  Q_OBJECT
 public:
  frmHelp();
  ~frmHelp() override;

  // Lists the subjects.
  void initWindow();
  // "init" lists the subjects, "topics" the topics of the chosen subject, "text" shows the chosen topic's text. Other
  // words do nothing.
  void buildWorkingLists(const std::string& command, long id = 0) override;

 protected:
  void activated() override;

 private:
  void listSubjects();
  void listTopics();
  void showText();
  void subjectChosen(int row);
  void topicChosen(int index);

  std::unique_ptr<Ui::frmHelp> ui_;
  QString subject_;           // the one chosen
  std::int64_t topicId_ = 0;  // the one chosen
};

}  // namespace mv
