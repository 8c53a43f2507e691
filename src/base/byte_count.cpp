#include "base/byte_count.h"

#include <QLocale>

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

struct Unit {
  QLatin1StringView name;
  double bytes;
  int decimals;
};

constexpr std::array kUnits = {Unit{"KB"_L1, 1e3, 0}, Unit{"MB"_L1, 1e6, 1}, Unit{"GB"_L1, 1e9, 2},
                               Unit{"TB"_L1, 1e12, 2}, Unit{"PB"_L1, 1e15, 2}};

double rounded(qint64 bytes, const Unit& unit) {
  const double scale = std::pow(10, unit.decimals);
  return std::round(static_cast<double>(bytes) / unit.bytes * scale) / scale;
}

}  // namespace

QString byteCountText(qint64 bytes) {
  if (bytes <= 0) return u"Zero KB"_s;
  if (bytes == 1) return u"1 byte"_s;
  if (bytes < 1000) return u"%1 bytes"_s.arg(bytes);
  const Unit* unit = kUnits.begin();
  // What rounds up to a thousand is one of the next unit.
  while (rounded(bytes, *unit) >= 1000 && unit + 1 != kUnits.end()) ++unit;
  QLocale locale;
  locale.setNumberOptions(QLocale::OmitGroupSeparator);
  return locale.toString(rounded(bytes, *unit), 'g', QLocale::FloatingPointShortest) + u' ' + unit->name;
}
