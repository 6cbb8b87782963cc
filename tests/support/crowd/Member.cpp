#include "Member.h"

#include <cstdio>

namespace crowd {
namespace {

constexpr std::uint32_t kTimeToLive = 120;
constexpr std::uint32_t kLongTimeToLive = 4500;
constexpr std::uint16_t kUniqueClass = dns::kClassIn | dns::kTopBit;
constexpr std::size_t kLongTextSize = 8192;

std::string fourDigits(unsigned number) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%04u", number);
  return digits;
}

void addString(dns::Bytes& text, const std::string& string) {
  text.push_back(static_cast<std::uint8_t>(string.size()));
  text.insert(text.end(), string.begin(), string.end());
}

}  // namespace

dns::Name serviceType() { return {"_pdl-datastream", "_tcp", "local"}; }

Member::Member(unsigned number, bool ours)
    : mNumber(number), mOurs(ours), mName((ours ? "Printer " : "Other ") + fourDigits(number)) {}

dns::Name Member::instance() const {
  dns::Name name{mName};
  const dns::Name type = serviceType();
  name.insert(name.end(), type.begin(), type.end());
  return name;
}

dns::Name Member::host(std::size_t link) const {
  return {"crowd-" + fourDigits(mNumber) + (isTwo && link > 0 ? "-" + std::to_string(link) : ""),
          "local"};
}

std::optional<dns::Record> Member::record(Records which, std::size_t link,
                                          const dns::Name& anotherHost) const {
  switch (which) {
    case kPointer:
      return dns::Record{serviceType(), dns::kTypePtr, dns::kClassIn, kLongTimeToLive, {},
                         instance()};
    case kLocation:
      return dns::Record{instance(),
                         dns::kTypeSrv,
                         kUniqueClass,
                         kTimeToLive,
                         {0, 0, 0, 0, 0x23, 0x8C},  // priority, weight, port 9100
                         namesAnotherHost ? anotherHost : host(link)};
    case kText:
      if (!hasText) return std::nullopt;
      return dns::Record{instance(), dns::kTypeTxt, kUniqueClass, kLongTimeToLive, text(), {}};
    case kIPv4Address:
    case kIPv6Address:
      return dns::Record{host(link),           which == kIPv4Address ? dns::kTypeA : dns::kTypeAaaa,
                         kUniqueClass,         kTimeToLive,
                         address(which, link), {}};
    default:
      return std::nullopt;
  }
}

// About as much as printers tell.
dns::Bytes Member::text() const {
  dns::Bytes text;
  addString(text, "txtvers=1");
  addString(text, "qtotal=1");
  addString(text, mOurs ? "ty=Veltra KX350T" : "ty=Norbury LP 20");
  addString(text, "note=Room " + std::to_string(mNumber));
  addString(text, "adminurl=http://" + host(0)[0] + ".local/");
  addString(text, "pdl=application/octet-stream,text/plain,image/jpeg,image/pwg-raster");
  addString(text, "priority=50");
  addString(text, "Color=T");
  addString(text, "Duplex=F");
  addString(text, mOurs ? "usb_MFG=Veltra" : "usb_MFG=Norbury");
  addString(text, mOurs ? "usb_MDL=KX350T" : "usb_MDL=LP 20");
  while (hasLongText && text.size() < kLongTextSize) {
    const std::size_t left = kLongTextSize - text.size() - 1;
    addString(text, std::string(left < 255 ? left : 255, 'x'));
  }
  return text;
}

// The last two bytes are the member's number; the second, or the sixth, tells the link and the
// moves.
dns::Bytes Member::address(Records family, std::size_t link) const {
  const auto at = static_cast<std::uint8_t>(100 + (link + std::size_t{2} * moves) % 100);
  const auto high = static_cast<std::uint8_t>(mNumber >> 8);
  const auto low = static_cast<std::uint8_t>(mNumber & 0xFF);
  if (family == kIPv4Address) return {10, at, high, low};
  return {0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, at, 0, 0, high, low};
}

}  // namespace crowd
