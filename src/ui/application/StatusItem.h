#pragma once

#include <QObject>
#include <QRect>
#include <optional>

namespace voltaro::ui {

// The application's item in the desktop's panel or menu bar, as the windows see it: clicks and
// menu choices. Each OS folder has its own; DesktopShell makes the one of this build.
class StatusItem : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    // Shown where the user can reach it; at login the panel may come later than the item.
    virtual bool isInPanel() const = 0;
    // Where the desktop last said the item is, for opening windows from its menu beside it.
    virtual std::optional<QRect> lastKnownAnchor() const { return std::nullopt; }

  signals:
    // A click on the item, with where it was when the desktop tells: the item's rectangle, or
    // the clicked point as an empty rectangle.
    void activated(std::optional<QRect> anchor);
    // The menu's choices, where the item has a menu.
    void openDashboardRequested();
    void openSettingsRequested();
    void quitRequested();
    // A panel took the item up, or the last one let it go.
    void panelPresenceChanged(bool isInPanel);
};

}  // namespace voltaro::ui
