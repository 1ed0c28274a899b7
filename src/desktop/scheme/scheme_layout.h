// The positions of all items of the drawn scheme.
#pragma once

#include <QFont>
#include <QPointF>
#include <QRectF>
#include <array>
#include <vector>

#include "model/model_store.h"
#include "screen/screen.h"

namespace zelvane {

/// Something on the scheme that can be clicked.
struct SchemeItem {
  enum class Kind { State, Menu, RateOn, RateOff, DependOn, DependOff, Kd };
  Kind kind = Kind::State;
  int number = 0;  // number of the state or link
  QRectF rect;
  Control* control = nullptr;  // the control that it shows, edits or presses

  bool isRate() const { return kind == Kind::RateOn || kind == Kind::RateOff; }
  bool isBadge() const { return kind == Kind::DependOn || kind == Kind::DependOff; }
  bool forward() const { return kind == Kind::RateOn || kind == Kind::DependOn; }
  bool same(const SchemeItem& other) const { return kind == other.kind && number == other.number; }
};

/// The grid of states in a rectangle: boxes, arrows and numbers, in proportion to its size.
class SchemeLayout {
 public:
  /// Finds the controls of MainPanel, which must exist.
  SchemeLayout();

  /// Places everything by the present values of the controls. Links that are not visible have no items.
  void place(const QSizeF& size, const QFont& font);

  const std::vector<SchemeItem>& items() const { return items_; }  // in the order of the Tab key
  const SchemeItem* at(const QPointF& point) const;
  const SchemeItem* find(const SchemeItem& item) const;  // the same item as it is now
  QRectF box(int state) const;
  bool horizontal(int link) const;
  double scale() const { return scale_; }  // 1 = as designed, for about 700 by 360 pixels
  const QFont& labelFont() const { return labelFont_; }
  const QFont& numberFont() const { return numberFont_; }
  const QFont& smallFont() const { return smallFont_; }

  Control& stateOn(int state) const { return *states_[state].on; }
  Control& stateLabel(int state) const { return *states_[state].label; }
  Control& stateConductance(int state) const { return *states_[state].conductance; }
  Control& startOccupancy(int state) const { return *states_[state].start; }
  Control* monitored(int state) const { return states_[state].monitored; }
  Control& rate(int link, bool forward) const { return forward ? *links_[link].on : *links_[link].off; }
  Control& kd(int link) const { return *links_[link].kd; }

  static QString rateText(const Control& rate);
  static QString badgeText(int link, bool forward);

 private:
  struct StateControls {
    Control* on = nullptr;
    Control* label = nullptr;
    Control* conductance = nullptr;
    Control* start = nullptr;
    Control* monitored = nullptr;
  };
  struct LinkControls {
    Control* on = nullptr;
    Control* off = nullptr;
    Control* kd = nullptr;
    Control* dependOn = nullptr;
    Control* dependOff = nullptr;
  };

  void placeLink(int link);
  void placeRate(int link, bool forward, const QRectF& room, Qt::Alignment alignment);

  std::array<StateControls, MaxStates + 1> states_;
  std::array<LinkControls, MaxLinks + 1> links_;
  std::vector<SchemeItem> items_;
  QSizeF pitch_;
  double scale_ = 1.0;
  QFont labelFont_;
  QFont numberFont_;
  QFont smallFont_;
};

}  // namespace zelvane
