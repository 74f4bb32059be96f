#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/pagestack.hpp"
#include "ui/pages/shell/headerbar.hpp"
#include "ui/pages/shell/speakerstrip.hpp"

#include <QKeySequence>
#include <QPointer>
#include <QShortcut>

#include <functional>
#include <vector>

namespace Corvane {

/// The keys of the window, and where the focus goes when what has it is hidden or disabled. No key of
/// the window acts while a text is typed.
class Keyboard final : public QObject {
public:
    /// The sections of the window, in the order of the Tab key. `cover` lies over the pages while the link
    /// is not online.
    struct Sections {
        QWidget& view;
        HeaderBar& header;
        SpeakerStrip& strip;
        Kit::PageStack& pages;
        QWidget& cover;
    };

    Keyboard(AppModel& model, const Sections& sections, const SpeakerStrip::Choices& choices,
             std::function<void()> showDiagnostics);

    /// Moves the focus as the Tab key does. Returns whether there is where to move it.
    bool moveFocus(bool forward);

    /// Before the page takes no input any more: what is being typed is set, and nothing in the page has the
    /// focus.
    void leavePage();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Act = std::function<void()>;

    void addShortcuts(const std::function<void()>& showDiagnostics);
    void add(const QList<QKeySequence>& keys, Act act, bool repeats = false);
    void followFocus();

    QWidget& pageArea() const;
    bool isIn(const QWidget& section, const QWidget* widget) const;
    void give(QWidget* widget) const;
    void giveFirst(QWidget& section) const;
    void focusNextSection(int by) const;
    void choosePage(int position);
    void turnPage(int by);
    void target(int number) const;
    void namePreset();
    Kit::Control* nearestMute() const;
    void mute() const;
    void listKeys();

    AppModel& model;
    const Sections sections;
    const SpeakerStrip::Choices choices;
    std::vector<QShortcut*> shortcuts;
    QPointer<QWidget> beforeLock;  // the control of the page that had the focus
    QPointer<QWidget> keys;        // the list of keys, while it is open
    bool byKeyboard = false;       // what the user used last
};

}  // namespace Corvane
