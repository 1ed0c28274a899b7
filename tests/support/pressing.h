// Short forms for what a user does to a control.
#pragma once

#include "support/store_test.h"

namespace zelvane {

/// Types a value and leaves the field.
inline void Enter(std::string_view name, std::string_view value) {
  Control& control = ControlNamed(name);
  ASSERT_EQ(TypeInto(control, value), "") << name;
  ASSERT_EQ(Commit(control), "") << name;
}

inline void TypeOnly(std::string_view name, std::string_view value) {
  ASSERT_EQ(TypeInto(ControlNamed(name), value), "") << name;
}

/// Presses the button, switch or menu item with this callback.
inline void PressCommand(std::string_view command) {
  if (Control* control = FindCommand(command)) {
    ASSERT_EQ(Press(*control), "") << command;
    return;
  }
  MenuItem* item = FindMenu(command);
  ASSERT_NE(item, nullptr) << command;
  ASSERT_EQ(PressMenu(*item), "") << command;
}

inline const std::string& Shown(std::string_view name) {
  return ControlNamed(name).text;
}

}  // namespace zelvane
