#include "windows/ListHelpers.h"

#include <QFileInfo>
#include <QSet>
#include <QUrl>

#include "base/Text.h"
#include "base/WebAddress.h"
#include "desktop/Browser.h"
#include "desktop/Dialogs.h"
#include "desktop/ListView.h"

namespace mv {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

QStringList rowTexts(const ListView& list, int row) {
  QStringList texts;
  for (int column = 0; column < list.columnCount(); ++column) texts << list.cell(row, column);
  return texts;
}

}  // namespace

void openInBrowser(QWidget* owner, const QString& url) {
  const QString address = QUrl(url).isRelative() ? "http://" + url : url;
  if (!isWebAddress(address))
    showMessage(owner, applicationTitle(), "This is no address of a web page:\r\n" + url, MessageIcon::Exclamation);
  else if (!openWithDefaultBrowser(address))
    showMessage(owner, applicationTitle(), "Sorry, couldn't find your browser.", MessageIcon::None);
}

void openPath(QWidget* owner, const QString& path) {
  if (!QFileInfo::exists(path))
    showMessage(owner, applicationTitle(), "It is not there:\r\n" + path, MessageIcon::Exclamation);
  else if (!openWithDefaultBrowser(QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)))
    showMessage(owner, applicationTitle(), "No program of this desktop opens it:\r\n" + path, MessageIcon::Exclamation);
}

QString publicAddress(const QString& address) {
  QUrl url(QUrl(address).isRelative() || !address.contains("://") ? "http://" + address : address);
  url.setUserInfo({});
  return url.toString();
}

void takeFirstLine(std::string& text, std::string& line) {
  const std::size_t end = text.find(kLineEnd);
  line = text.substr(0, end);
  text = end == std::string::npos ? std::string() : text.substr(end + kLineEnd.size());
}

std::vector<QStringList> rowsOf(const std::vector<NamedId>& records) {
  return rowsOf(records, [](const NamedId& record) -> QStringList {
    return {toQString(record.name), QString::number(record.id)};
  });
}

void moveSelectedItems(ListView& fromList, ListView& toList) {
  const std::vector<int> rows = fromList.selectedRows();
  toList.addRows(rowsOf(rows, [&fromList](int row) { return rowTexts(fromList, row); }));
  fromList.removeRows(rows);
}

void removeListedItems(ListView& listA, const ListView& listB) {
  QSet<QString> listed;
  for (int row = 0; row < listB.rowCount(); ++row) listed.insert(listB.cell(row, 0));
  std::vector<int> doubled;
  for (int row = 0; row < listA.rowCount(); ++row)
    if (listed.contains(listA.cell(row, 0))) doubled.push_back(row);
  listA.removeRows(doubled);
}

}  // namespace mv
