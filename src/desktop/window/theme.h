// Colours and style of the windows, light and dark.
#pragma once

#include <QColor>
#include <QIcon>
#include <QString>
#include <optional>

namespace zelvane {

enum class Theme { System, Light, Dark };

/// "light", "dark" or "system"; nothing for another word.
std::optional<Theme> ThemeNamed(const QString& word);
QString ThemeWord(Theme theme);

/// Dresses the application. System takes the side that the desktop's own palette is on.
void ApplyTheme(Theme theme);

bool IsDark();

/// Colour of marks and of what is selected.
QColor AccentColour();

/// Colour of a text that was refused.
QColor RefusedColour();

/// A drawing in the colours of the theme: "model", "stimulus", "analysis", "rscm", "run", "stop", "open",
/// "save", "undo", "redo". A name without a drawing gives a plain disc.
QIcon ThemedIcon(const QString& name);

}  // namespace zelvane
