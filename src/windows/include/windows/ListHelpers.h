// Small services that several windows share.
#pragma once

#include <QStringList>
#include <string>
#include <vector>

#include "store/Id.h"

class QWidget;

namespace mv {

class ListView;

// Opens `url` in the default browser; a failure is a message, and so is an address that is not http or https. Without a
// scheme it is http.
void openInBrowser(QWidget* owner, const QString& url);

// Opens a file with the program that the desktop has for it, or a folder with its file manager; that it is not there,
// or that nothing opens it, is a message.
void openPath(QWidget* owner, const QString& path);

// `address` with its scheme, http when it has none, and without user name and password: to be shown or given away.
QString publicAddress(const QString& address);

// Cuts the first line, ended by CR LF, off `text` into `line`. Without a CR LF `line` is the whole text and `text`
// empty.
void takeFirstLine(std::string& text, std::string& line);

// The rows of a list that shows `records`, whose texts `textsOf` gives.
template <class Record, class TextsOf>
std::vector<QStringList> rowsOf(const std::vector<Record>& records, TextsOf textsOf) {
  std::vector<QStringList> rows;
  rows.reserve(records.size());
  for (const Record& record : records) rows.push_back(textsOf(record));
  return rows;
}
// Name and identifier.
std::vector<QStringList> rowsOf(const std::vector<NamedId>& records);

// Moves the selected rows, in list order, with all their columns; they arrive not selected and in normal type.
void moveSelectedItems(ListView& fromList, ListView& toList);

// Removes from `listA` every row whose text is also the text of a row of `listB`.
void removeListedItems(ListView& listA, const ListView& listB);

}  // namespace mv
