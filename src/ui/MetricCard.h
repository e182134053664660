#pragma once

#include <QString>
#include <QWidget>
#include <optional>
#include <string_view>

class QLabel;

namespace voltaro::ui {

class SymbolView;

// One line of the dashboard: a symbol, a title with an optional caption beneath it, and a value at
// the right. The parts change in place, so a refresh keeps the row and its height.
class MetricCard : public QWidget {
    Q_OBJECT

  public:
    MetricCard(const QString& title, std::string_view symbol, QWidget* parent = nullptr);

    void setTitle(const QString& title);
    void setSymbol(std::string_view symbol);
    void setCaption(const std::optional<QString>& caption);
    // "12.3 W", or "— W" while the value is unknown.
    void setValue(std::optional<double> value, const QString& unit);
    // A value written out already, such as a temperature.
    void setValueText(const QString& text);

    QString title() const;
    std::optional<QString> caption() const;
    QString valueText() const;
    std::string_view symbol() const;

  private:
    SymbolView* symbol_;
    QLabel* title_;
    QLabel* caption_;
    QLabel* value_;
};

}  // namespace voltaro::ui
