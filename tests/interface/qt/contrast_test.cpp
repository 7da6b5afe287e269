#include <QImage>
#include <QLineEdit>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>

#include "platform/fake/system/fake_system.h"
#include "platform/linux/widgets/label_widget.h"
#include "qt_interface_test.h"

namespace vorrin {
namespace {

/// What accessibility guidelines ask of text of this size, of 21 at most.
constexpr double enough = 4.5;

struct Text {
  QString example;
  QColor color;
  QColor ground;
  bool isDisabled = false;
};

double linear(float channel) {
  return channel <= 0.04045F ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
  return (light + 0.05) / (dark + 0.05);
}

QColor laidOver(const QColor& ground, const QColor& color) {
  const auto mixed = [&color](float above, float below) {
    return above * color.alphaF() + below * (1 - color.alphaF());
  };
  return QColor::fromRgbF(mixed(color.redF(), ground.redF()),
                          mixed(color.greenF(), ground.greenF()),
                          mixed(color.blueF(), ground.blueF()));
}

/// The text's row in the table of the document.
std::string row(const Text& text) {
  const QString form = "| %1%2 | %3 | %4 | %5 |\n";
  return form
      .arg(text.example, text.isDisabled ? " (disabled)" : "", text.color.name(),
           text.ground.name())
      .arg(contrast(text.color, text.ground), 0, 'f', 1)
      .toStdString();
}

class Contrast : public QtInterfaceTest {
 protected:
  /// Adds every text that is shown inside `root`, by its colours.
  void look(QWidget& root) {
    const QImage picture = root.grab().toImage();
    for (QWidget* widget : root.findChildren<QWidget*>()) {
      if (auto* label = dynamic_cast<LabelWidget*>(widget); label != nullptr) {
        add(picture, root, *label, label->text(), QPalette::WindowText, {0, 0});
      } else if (auto* field = qobject_cast<QLineEdit*>(widget); field != nullptr) {
        const bool isEmpty = field->text().isEmpty();
        add(picture, root, *field, isEmpty ? field->placeholderText() : field->text(),
            isEmpty ? QPalette::PlaceholderText : QPalette::Text,
            {field->width() - 5, field->height() / 2});
      } else if (auto* button = dynamic_cast<NativeView*>(widget);
                 button != nullptr && button->isControl()) {
        // Above the title, below the edge.
        add(picture, root, *widget, button->shownText(), QPalette::ButtonText,
            {widget->width() / 2, 3});
      }
    }
  }

  std::map<std::string, Text> texts_;

 private:
  void add(const QImage& picture, const QWidget& root, const QWidget& widget, const QString& shown,
           QPalette::ColorRole role, QPoint groundPlace) {
    if (shown.isEmpty()) return;
    const QPoint place = widget.mapTo(&root, groundPlace) * picture.devicePixelRatio();
    const QColor ground = picture.pixelColor(place);
    const auto group = widget.isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QColor color = laidOver(ground, widget.palette().color(group, role));
    texts_.try_emplace(ground.name().toStdString() + color.name().toStdString(),
                       Text{shown, color, ground, !widget.isEnabled()});
  }
};

TEST_F(Contrast, every_text_stands_out_enough_and_is_listed) {
  look(window());
  click(app->buttons[1]);
  look(window());
  fake::system().trusted = false;
  launch();
  look(window());
  savePreset("game", *app->currentPreset());
  app->reloadPresets("game");
  click(button("Rename"));
  ASSERT_TRUE(hasSheet());
  look(*sheet());
  answer("Cancel");
  click(button("Delete"));
  look(*sheet());
  std::ostringstream listed;
  listed << std::ifstream(VORRIN_CONTRAST_DOCUMENT).rdbuf();
  for (const auto& [key, text] : texts_) {
    std::fputs(row(text).c_str(), stdout);
    EXPECT_TRUE(text.isDisabled || contrast(text.color, text.ground) >= enough);
    EXPECT_THAT(listed.str(), testing::HasSubstr(row(text)));
  }
}

}  // namespace
}  // namespace vorrin
