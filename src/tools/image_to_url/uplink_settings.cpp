#include "tools/image_to_url/uplink_settings.h"

using namespace Qt::StringLiterals;

void UplinkSettings::read(JsonReader& reader) { reader.read("source"_L1, source); }

void UplinkSettings::write(QJsonObject& object) const { object.insert("source"_L1, rawValue(source)); }
