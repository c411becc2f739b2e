#include "SiteEditorPages.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "base/Text.h"
#include "store/SiteDerivations.h"
#include "windows/ElidedLabel.h"
#include "windows/EntryBox.h"
#include "windows/ScrollingPage.h"

namespace mv {

namespace {

using Accepts = EntryBox::Accepts;

// With these the whole first page is seen at the window's first size.
constexpr int kTightSpacing = 3;
constexpr QMargins kTightMargins(9, 4, 9, 4);

QLabel* wrappedLabel(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setWordWrap(true);
  label->setTextFormat(Qt::PlainText);
  return label;
}

QLabel* labelFor(QWidget* control, const QString& text) {
  auto* label = wrappedLabel(text, control->parentWidget());
  label->setBuddy(control);
  control->setAccessibleName(text);
  return label;
}

EntryBox* numberBox(const char* name, const char* text, const char* toolTip, QWidget* parent) {
  auto* box = new EntryBox(name, Accepts::Digits, parent);
  box->setText(text);
  box->setToolTip(toolTip);
  box->setFixedWidth(widthForDigits(*box, EntryBox::kMaxDigits));
  return box;
}

// One row of the grid: label, box, unit.
void addLimit(QGridLayout* grid, EntryBox* box, const char* label, const char* unit) {
  const int row = grid->rowCount();
  grid->addWidget(labelFor(box, label), row, 0);
  grid->addWidget(box, row, 1);
  if (*unit) {
    grid->addWidget(wrappedLabel(unit, box->parentWidget()), row, 2);
    box->setAccessibleDescription(unit);
  }
}

}  // namespace

RequiredInfoPage::RequiredInfoPage() {
  txtURL = new EntryBox("txtURL", Accepts::OneLine, this);
  txtURL->setPlaceholderText("www.example.org/pictures/");
  lblURLHint_ = new ElidedLabel("lblURLHint", {}, this);
  connect(txtURL, &QLineEdit::textChanged, this, &RequiredInfoPage::showHint);
  txtURL->setToolTip("Enter the URL here. Do not include the http:// part");
  txtUpperLimit = numberBox("txtUpperLimit", "24", "Don't download files larger than this size", this);
  txtLowerLimit = numberBox("txtLowerLimit", "10", "Don't download files smaller that this size", this);
  txtPagesToScan = numberBox("txtPagesToScan", "10", "Try to scan this many pages", this);
  txtFilesToDownload = numberBox("txtFilesToDownload", "1000", "Try to download this many files", this);

  auto* grid = new QGridLayout;
  grid->setVerticalSpacing(kTightSpacing);
  grid->setHorizontalSpacing(2 * kTightSpacing);
  grid->setColumnStretch(2, 1);
  addLimit(grid, txtUpperLimit, "Upper Limit", "Megabytes (This is the largest file that will be downloaded.)");
  addLimit(grid, txtLowerLimit, "Lower Limit", "Kilobytes (Files smaller than this will not be downloaded.)");
  addLimit(grid, txtPagesToScan, "Queue Size", "Pages (Keep below 50 for best results)");
  addLimit(grid, txtFilesToDownload, "Files To Download", "");

  auto* note = wrappedLabel(
      "If the web site you want to scan requires a username, password, or other form of authentication, please be sure "
      "to click the Authentication tab. This will allow you to provide the needed information to gain access to the "
      "web site.",
      this);
  note->setObjectName("lblRequiredInfoPasswordWarning");

  auto* layout = new QVBoxLayout(makeScrollingPage(this));
  layout->setContentsMargins(kTightMargins);
  layout->setSpacing(kTightSpacing);
  layout->addWidget(labelFor(txtURL, "Web Site Location (URL)"));
  layout->addWidget(txtURL);
  layout->addWidget(lblURLHint_);
  layout->addLayout(grid);
  layout->addWidget(note);
  layout->addStretch();
}

std::array<EntryBox*, 4> RequiredInfoPage::limitBoxes() const {
  return {txtUpperLimit, txtLowerLimit, txtPagesToScan, txtFilesToDownload};
}

QWidget* RequiredInfoPage::emptyLimit() const {
  for (EntryBox* box : limitBoxes())
    if (box->text().isEmpty()) return box;
  return nullptr;
}

void RequiredInfoPage::setOtherSites(std::set<std::string> names) {
  otherSites_ = std::move(names);
  showHint(txtURL->text());
}

void RequiredInfoPage::showHint(const QString& typed) {
  if (typed != typed.trimmed())
    lblURLHint_->setLine("There is a blank at the beginning or the end of the address.");
  else if (otherSites_.contains(siteLocation(toUtf8(typed))))
    lblURLHint_->setLine("Another web site has this address already.");
  else if (typed.startsWith("https://"))
    lblURLHint_->setLine("With https:// the pages and files of this site come by https only.");
  else
    lblURLHint_->setLine({});
}

PathsPage::PathsPage() {
  txtDefaultPath = new QLineEdit(this);
  txtDefaultPath->setObjectName("txtDefaultPath");
  txtDefaultPath->setToolTip("This is where downloaded files will be saved.");
  cmdBrowse = new QPushButton("Browse...", this);
  cmdBrowse->setObjectName("cmdBrowse");

  auto* folder = new QHBoxLayout;
  folder->addWidget(txtDefaultPath);
  folder->addWidget(cmdBrowse);

  auto* layout = new QVBoxLayout(makeScrollingPage(this));
  layout->addWidget(labelFor(txtDefaultPath, "Default Path - This is where files will be saved for this web site."));
  layout->addLayout(folder);
  layout->addWidget(makeUniqueNames());
  layout->addWidget(makePathManagement());
  layout->addStretch();
}

QWidget* PathsPage::makeUniqueNames() {
  auto* frame = new QGroupBox("Unique File Names", this);
  optPathUniqueNames = new QCheckBox("Unique Names", frame);
  optPathUniqueNames->setObjectName("optPathUniqueNames");
  txtPathsBaseName = new EntryBox("txtPathsBaseName", Accepts::NoQuotes, frame);

  auto* baseName = new QHBoxLayout;
  QLabel* label = labelFor(txtPathsBaseName, "Base Name");
  label->setWordWrap(false);
  baseName->addWidget(label);
  baseName->addWidget(txtPathsBaseName);

  auto* layout = new QVBoxLayout(frame);
  layout->addWidget(optPathUniqueNames);
  layout->addLayout(baseName);
  layout->addWidget(wrappedLabel(
      "Turn this option on to have all files downloaded from this web site to be saved with unique names. Use this if "
      "there are files on the web site that have the same name but different content. Each file will be named using "
      "the "
      "Base Name followed by a number.",
      frame));
  return frame;
}

QWidget* PathsPage::makePathManagement() {
  auto* frame = new QGroupBox("Advanced Path Management", this);
  cmdOpenPathManager = new QPushButton("Open Path Manager...", frame);
  cmdOpenPathManager->setObjectName("cmdOpenPathManager");
  auto* layout = new QVBoxLayout(frame);
  layout->addWidget(wrappedLabel("Use the PathManager to have more control over the location of saved files.", frame));
  layout->addWidget(cmdOpenPathManager, 0, Qt::AlignLeft);
  return frame;
}

AutoScanPage::AutoScanPage() {
  chkAutoScan = new QCheckBox("AutoScan This Site", this);
  chkAutoScan->setObjectName("chkAutoScan");
  chkAutoScan->setToolTip("Check to scan this site when Scan On Launch is turned on");
  chkAutoScan->setChecked(true);

  auto* layout = new QVBoxLayout(makeScrollingPage(this));
  layout->addWidget(chkAutoScan);
  layout->addWidget(wrappedLabel(
      "With automatic scanning Morvane starts to scan this site, and to download from it, as soon as the program has "
      "been opened. It ends by itself after the number of hours that the Preferences window names.",
      this));
  layout->addWidget(wrappedLabel(
      "To use the AutoScan option, first turn on the Scan On Launch option in the Preferences window. Then go through "
      "each web site you want to scan and turn on its AutoScan option.",
      this));
  layout->addStretch();
}

DomainHoppingPage::DomainHoppingPage() {
  txtHops = numberBox("txtHops", "", "This is the number of domains Morvane is allowed to visit from this site.", this);

  auto* hops = new QHBoxLayout;
  hops->addWidget(labelFor(txtHops, "Allow Morvane to hop to this many different domains"), 1);
  hops->addWidget(txtHops);

  auto* layout = new QVBoxLayout(makeScrollingPage(this));
  layout->addLayout(hops);
  layout->addWidget(wrappedLabel(
      "Pages often hold links to other web sites. Here you say how many other domains such links may lead to while "
      "this "
      "site is scanned: pages and files of that many foreign domains are taken up as well. With 0 Morvane never leaves "
      "the domain of this site.",
      this));
  layout->addWidget(wrappedLabel("Important Note: The highest value allowable is 100.", this));
  layout->addStretch();
}

OtherPage::OtherPage() {
  auto* layout = new QVBoxLayout(makeScrollingPage(this));
  layout->addWidget(makePathMatching());
  layout->addWidget(makeLinkCache());
  layout->addStretch();
}

QWidget* OtherPage::makePathMatching() {
  auto* frame = new QGroupBox("Path Matching", this);
  chkAlternateMatchPath = new QCheckBox("Alternate MatchPath algorithm", frame);
  chkAlternateMatchPath->setObjectName("chkAlternateMatchPath");
  auto* layout = new QVBoxLayout(frame);
  layout->addWidget(chkAlternateMatchPath);
  layout->addWidget(
      wrappedLabel("Sometimes Morvane will parse the HTML in a manner that causes urls to be constructed improperly. "
                   "Turn this on to use an alternate method of constructing urls. It may clear up the problem.",
                   frame));
  return frame;
}

QWidget* OtherPage::makeLinkCache() {
  auto* frame = new QGroupBox("Link Cache", this);
  cmdClearCache = new QPushButton("Clear Cache", frame);
  cmdClearCache->setObjectName("cmdClearCache");
  auto* layout = new QVBoxLayout(frame);
  layout->addWidget(wrappedLabel(
      "When Morvane scans a site it keeps track of all the links it has followed. These links will not be followed in "
      "subsequent scans of the web site unless you clear the Link Cache. Click the Clear Cache button to clear all the "
      "links for this web site.",
      frame));
  layout->addWidget(cmdClearCache, 0, Qt::AlignLeft);
  return frame;
}

}  // namespace mv
