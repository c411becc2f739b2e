// How large a window opens: as large as it is laid down, or larger where its contents need it. What is kept of a window
// that the user has not resized stays the laid-down size, so that another font or screen finds it as it was.
#pragma once

#include <QSize>
#include <vector>

namespace mv {

class FirstSize {
 public:
  // Sizes in twips, frame included.
  explicit FirstSize(const QSize& own) : own_{own}, given_(own) {}

  void addOwn(const QSize& size) { own_.push_back(size); }
  // In place of the first one.
  void setOwnHeight(int height) { own_.front().setHeight(height); }
  const QSize& own() const { return own_.front(); }

  // `given` in twips is what the window is to have, `needed` in pixels what its contents need. A width or height of the
  // user's is taken as it is; one of the window's own is enlarged to `needed`, but not beyond `room`. Pixels.
  QSize shown(const QSize& given, const QSize& needed, const QSize& room) const;
  // From now on `shown` pixels stand for `given` twips.
  void keep(const QSize& given, const QSize& shown) { given_ = given, shown_ = shown; }
  // What is kept of a window that has `pixels`: per direction the size given when it still shows that, in twips.
  QSize kept(const QSize& pixels) const;
  const QSize& given() const { return given_; }

  bool isOwnWidth(int twips) const;
  bool isOwnHeight(int twips) const;

 private:
  std::vector<QSize> own_;
  QSize given_;
  QSize shown_;
};

}  // namespace mv
