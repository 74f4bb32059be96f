#pragma once

#include "app/model/appmodel.hpp"

#include "ui/pages/technical/techpage.hpp"

#include <QWidget>

#include <array>

class QStackedLayout;

namespace Corvane {

/// Shows one page of the technical mode. A page is built when it is first shown and then kept.
class TechPageView final : public QWidget {
public:
    TechPageView(AppModel& model, QWidget* parent);

    void setPage(const TechPage& page);

private:
    QWidget* build(const TechPage& page);

    AppModel& model;
    QStackedLayout* stack;
    std::array<QWidget*, TechPage::all.size()> built{};
};

}  // namespace Corvane
