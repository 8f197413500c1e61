#include "server/demo/demo_goods.h"

#include <algorithm>
#include <utility>

#include "server/demo/demo_text.h"

namespace orvane::server {
namespace {

/// Materials that differ by size. `sizes` are parted by '|'; each next one is dearer.
struct Family {
  DemoKind kind;
  std::string_view name;
  std::string_view name2;
  std::string_view sizes;
  std::string_view sizes2;  ///< empty: as they are
  std::int16_t measure;
  std::int16_t incomeMeasure;
  std::int16_t barCodeMeasure;
  std::int16_t decimals;
  std::int64_t priceCents;   ///< of the first size
  std::int64_t growthCents;  ///< from one size to the next
  int usual;
};

// A family begins at a multiple of 40 from 20 000 on, so that a new size moves no other family.
constexpr std::int64_t kFirstSerial = 20000;
constexpr std::int64_t kSerialsOfFamily = 40;
constexpr std::int32_t kFirstMaterial = 10000;
constexpr Family kFamilies[] = {
    {kRawMaterials, "Кръгла стомана C45 Ø%s мм", "Round steel C45 dia. %s mm",
     "8|10|12|14|16|18|20|22|25|28|30|32|35|40|45|50|55|60|65|70|80|90|100|110|120", "", 201, 202,
     0, 2, 112, 2, 400},
    {kRawMaterials, "Ламарина %s мм", "Steel sheet %s mm",
     "0,5|0,8|1|1,2|1,5|2|2,5|3|4|5|6|8|10|12|15|20", "", 201, 202, 0, 2, 138, -1, 600},
    {kRawMaterials, "Тръба безшевна %s мм", "Seamless tube %s mm",
     "21,3х2,6|26,9х2,6|33,7х3,2|42,4х3,2|48,3х3,2|60,3х3,6|76,1х3,6|88,9х4|114,3х4,5|139,7х5", "",
     302, 302, 0, 2, 310, 275, 60},
    {kRawMaterials, "Профил стоманен %s мм", "Steel profile %s mm",
     "20х20х2|25х25х2|30х30х2|40х20х2|40х40х2|40х40х3|50х30х3|50х50х3|60х40х3|60х60х3|80х40х3|"
     "80х80х4|"
     "100х50х4|100х100х5",
     "", 302, 302, 0, 2, 165, 140, 90},
    {kRawMaterials, "Шина стоманена %s мм", "Flat steel bar %s mm",
     "20х4|20х5|25х4|25х5|30х4|30х5|40х4|40х5|40х8|50х5|50х8|50х10|60х6|60х10|80х8|80х10|100х10",
     "", 201, 202, 0, 2, 121, 1, 250},
    {kRawMaterials, "Винкел %s мм", "Steel angle %s mm",
     "20х20х3|25х25х3|30х30х3|30х30х4|35х35х4|40х40х4|45х45х4|50х50х5|60х60х6|70х70х7|80х80х8", "",
     201, 202, 0, 2, 118, 1, 300},
    {kRawMaterials, "Алуминиева ламарина %s мм", "Aluminium sheet %s mm",
     "0,5|0,8|1|1,5|2|2,5|3|4|5|6|8|10", "", 201, 201, 0, 2, 465, 4, 120},
    {kRawMaterials, "Алуминиев профил %s мм", "Aluminium profile %s mm",
     "20х20|20х40|30х30|30х60|40х40|40х80|45х45|45х90|50х50|60х60|80х80", "", 302, 302, 0, 2, 620,
     310, 40},
    {kRawMaterials, "Месинг кръг Ø%s мм", "Brass rod dia. %s mm",
     "6|8|10|12|14|16|18|20|22|25|28|30|35|40|45|50", "", 201, 201, 0, 3, 890, 5, 35},
    {kRawMaterials, "Бронз CuSn8 кръг Ø%s мм", "Bronze CuSn8 rod dia. %s mm",
     "20|25|30|35|40|50|60|70|80|100", "", 201, 201, 0, 3, 1540, 12, 20},
    {kRawMaterials, "Полиамид PA6 Ø%s мм", "Polyamide PA6 rod dia. %s mm",
     "20|25|30|40|50|60|70|80|90|100|120|150", "", 302, 302, 0, 2, 540, 380, 8},
    {kRawMaterials, "Болт М%s DIN 933 8.8", "Hexagon bolt M%s DIN 933 8.8",
     "5х12|5х16|6х16|6х20|6х25|6х30|8х16|8х20|8х25|8х30|8х40|10х20|10х30|10х40|10х50|12х30|12х40|"
     "12х50|"
     "12х60|16х40|16х50|16х60|16х80|20х60|20х80",
     "", 105, 106, 100, 2, 240, 210, 12},
    {kRawMaterials, "Гайка М%s DIN 934", "Hexagon nut M%s DIN 934",
     "3|4|5|6|8|10|12|14|16|18|20|22|24|27|30", "", 105, 106, 100, 2, 90, 165, 15},
    {kRawMaterials, "Шайба М%s DIN 125", "Plain washer M%s DIN 125",
     "3|4|5|6|8|10|12|14|16|18|20|24|27|30", "", 105, 106, 100, 2, 45, 60, 15},
    {kRawMaterials, "Винт М%s DIN 912 12.9", "Socket screw M%s DIN 912 12.9",
     "4х10|4х16|4х20|5х16|5х20|5х30|6х16|6х20|6х30|8х20|8х30|8х40|10х30|10х40|10х50|12х40|12х50|"
     "12х60",
     "", 105, 106, 100, 2, 320, 240, 10},
    {kRawMaterials, "Лагер %s 2RS", "Ball bearing %s 2RS",
     "608|625|626|6000|6001|6002|6003|6004|6005|6006|6007|6008|6200|6201|6202|6203|6204|6205|6206|"
     "6207|"
     "6208|6302|6303|6304|6305|6306|6308",
     "", 100, 100, 100, 0, 145, 62, 24},
    {kRawMaterials, "Семеринг %s", "Oil seal %s",
     "15х26х7|17х30х7|20х30х7|20х35х7|25х37х7|25х47х7|30х42х7|30х47х7|35х52х7|40х62х8|45х62х8|"
     "50х72х8|"
     "60х80х8",
     "", 100, 102, 100, 0, 88, 27, 36},
    {kRawMaterials, "О-пръстен %s мм", "O-ring %s mm",
     "6х2|8х2|10х2|12х2|15х2|18х2|20х2,5|25х2,5|30х3|35х3|40х3|50х3|60х3,5|80х4|100х4", "", 103,
     103, 100, 0, 960, 290, 3},
    {kRawMaterials, "Електрод E6013 Ø%s мм", "Electrode E6013 dia. %s mm", "2|2,5|3,2|4|5", "", 201,
     201, 0, 1, 395, -6, 50},
    {kRawMaterials, "Тел заваръчна SG2 Ø%s мм", "Welding wire SG2 dia. %s mm", "0,8|0,9|1|1,2|1,6",
     "", 201, 201, 0, 1, 285, -7, 75},
    {kRawMaterials, "Кабел СВТ %s мм²", "Cable SVT %s sq. mm",
     "2х1,5|2х2,5|3х1,5|3х2,5|3х4|3х6|4х4|4х6|4х10|4х16|5х2,5|5х4|5х6|5х10|5х16", "", 302, 303, 0,
     1, 95, 74, 200},
    {kRawMaterials, "Контактор %s", "Contactor %s",
     "9 А|12 А|16 А|18 А|25 А|32 А|40 А|50 А|65 А|80 А|95 А", "", 100, 100, 100, 0, 1240, 860, 6},
    {kRawMaterials, "Датчик индуктивен %s", "Inductive sensor %s",
     "М8 PNP|М12 PNP|М12 NPN|М18 PNP|М18 NPN|М30 PNP", "", 100, 100, 100, 0, 1890, 420, 10},
    {kRawMaterials, "Емайллак RAL %s", "Enamel paint RAL %s",
     "1015|1018|3000|3020|5010|5015|5017|6005|6018|7016|7035|7040|8017|9003|9005|9016", "", 401,
     401, 0, 1, 745, 8, 30},
    {kRawMaterials, "Масло хидравлично ISO VG %s", "Hydraulic oil ISO VG %s", "22|32|46|68|100|150",
     "", 401, 402, 0, 1, 285, 12, 200},
    {kRawMaterials, "Газ технически %s", "Technical gas %s",
     "кислород|аргон|азот|въглероден диоксид|ацетилен|аргонова смес",
     "oxygen|argon|nitrogen|carbon dioxide|acetylene|argon mix", 403, 403, 0, 2, 420, 190, 40},
    {kWares, "Помпа центробежна %s", "Centrifugal pump %s",
     "0,37 kW|0,55 kW|0,75 kW|1,1 kW|1,5 kW|2,2 kW|3 kW|4 kW|5,5 kW|7,5 kW|11 kW", "", 100, 100,
     100, 0, 11800, 6900, 4},
    {kWares, "Кран сферичен DN%s", "Ball valve DN%s", "15|20|25|32|40|50|65|80|100", "", 100, 102,
     100, 0, 460, 590, 24},
    {kWares, "Филтър маслен %s", "Oil filter %s", "ФМ-10|ФМ-16|ФМ-25|ФМ-40|ФМ-63|ФМ-100|ФМ-160", "",
     100, 102, 100, 0, 980, 640, 12},
    {kWares, "Редуктор червячен %s", "Worm gearbox %s",
     "РЧ-30|РЧ-40|РЧ-50|РЧ-63|РЧ-75|РЧ-90|РЧ-110", "", 100, 100, 100, 0, 5400, 3100, 3},
    {kWares, "Цилиндър хидравличен %s", "Hydraulic cylinder %s",
     "40/25х100|40/25х200|50/30х150|50/30х300|63/36х200|63/36х400|80/45х250|80/45х500|100/56х300",
     "", 100, 100, 100, 0, 7600, 2350, 5},
    {kWares, "Маркуч високо налягане %s", "High pressure hose %s",
     "DN6|DN8|DN10|DN12|DN16|DN20|DN25|DN32", "", 302, 302, 0, 1, 310, 140, 50},
    {kOtherMaterials, "Свредло HSS Ø%s мм", "Twist drill HSS dia. %s mm",
     "1|1,5|2|2,5|3|3,5|4|4,2|5|5,5|6|6,8|7|8|8,5|9|10|10,2|11|12|13|14|16|18|20", "", 100, 104,
     100, 0, 65, 48, 10},
    {kOtherMaterials, "Фреза палцова Ø%s мм", "End mill dia. %s mm", "3|4|5|6|8|10|12|14|16|20|25",
     "", 100, 100, 100, 0, 890, 510, 5},
    {kOtherMaterials, "Пластина твърдосплавна %s", "Carbide insert %s",
     "CNMG 120408|DNMG 150608|TNMG 160404|VNMG 160404|WNMG 080408|APKT 1604|SEKT 1204", "", 100,
     104, 100, 0, 560, 45, 20},
    {kOtherMaterials, "Диск за рязане Ø%s мм", "Cutting disc dia. %s mm",
     "115|125|150|180|230|300|350", "", 100, 102, 100, 0, 62, 55, 48},
    {kOtherMaterials, "Ръкавици работни %s", "Work gloves %s",
     "кожени р-р 9|кожени р-р 10|кожени р-р 11|нитрилни р-р 8|нитрилни р-р 9|нитрилни р-р "
     "10|топящи",
     "leather size 9|leather size 10|leather size 11|nitrile size 8|nitrile size 9|nitrile size "
     "10|dipped",
     102, 102, 101, 0, 1680, 210, 4},
    {kOtherMaterials, "Обувки работни S3 № %s", "Safety shoes S3 size %s",
     "37|38|39|40|41|42|43|44|45|46|47", "", 101, 101, 101, 0, 3450, 0, 8},
    {kOtherMaterials, "Облекло работно р-р %s", "Workwear size %s", "S|M|L|XL|XXL|3XL", "", 100,
     100, 100, 0, 2980, 40, 15},
    {kOtherMaterials, "Лични предпазни средства: %s", "Protective equipment: %s",
     "каска|очила|антифони|маска FFP2|щит|колан",
     "helmet|goggles|ear muffs|FFP2 mask|face shield|harness", 100, 102, 100, 0, 240, 310, 24},
    {kOtherMaterials, "Хартия копирна %s", "Copy paper %s", "А4 70 г|А4 80 г|А4 90 г|А3 80 г", "",
     801, 802, 801, 0, 289, 95, 25},
    {kOtherMaterials, "Тонер касета черна %s", "Black toner cartridge %s",
     "2 000 стр.|3 500 стр.|6 000 стр.|10 000 стр.|16 000 стр.",
     "2 000 p.|3 500 p.|6 000 p.|10 000 p.|16 000 p.", 100, 100, 100, 0, 2890, 1650, 4},
    {kOtherMaterials, "Препарат за почистване %s", "Cleaning agent %s",
     "подове|стъкла|санитарен|обезмаслител|ръце|универсален",
     "floors|glass|sanitary|degreaser|hands|universal", 401, 401, 0, 1, 215, 40, 20},
    {kOtherMaterials, "Кашон велпапе %s см", "Corrugated box %s cm",
     "20х15х10|30х20х15|30х30х20|40х30х20|40х30х30|50х40х30|60х40х40|80х60х40", "", 100, 105, 100,
     0, 38, 22, 200},
    {kOtherMaterials, "Палет дървен %s мм", "Wooden pallet %s mm", "800х600|1200х800|1200х1000", "",
     100, 100, 0, 0, 620, 310, 40},
    {kCapital, "Струг с ЦПУ %s", "CNC lathe %s", "Ø200|Ø320|Ø400|Ø500", "", 100, 100, 0, 0, 6850000,
     2400000, 1},
    {kCapital, "Обработващ център %s", "Machining centre %s", "3 оси|4 оси|5 оси",
     "3 axes|4 axes|5 axes", 100, 100, 0, 0, 11200000, 5600000, 1},
    {kCapital, "Мотокар електрически %s", "Electric forklift %s", "1,5 т|2 т|2,5 т|3,5 т", "", 100,
     100, 0, 0, 2150000, 380000, 1},
    {kCapital, "Компресор винтов %s", "Screw compressor %s", "11 kW|15 kW|22 kW|37 kW", "", 100,
     100, 0, 0, 640000, 310000, 1},
    {kCapital, "Работна станция %s", "Workstation %s", "офис|конструктор|сървър",
     "office|design|server", 100, 100, 0, 0, 98000, 165000, 2},
};

/// Services that differ by what they are done to; no more than 40 characters with it.
struct ServiceFamily {
  DemoKind kind;
  std::string_view name;
  std::string_view name2;
  std::string_view objects;
  std::string_view objects2;
  std::int16_t measure;
  std::int16_t decimals;
  std::int64_t priceCents;
  std::int64_t growthCents;
  int usual;
};
constexpr std::int64_t kFirstServiceSerial = 30001;
constexpr std::int16_t kWorkingDay = 602;  // the unit of training, which is exempt from VAT
constexpr ServiceFamily kServiceFamilies[] = {
    {kPricedServices, "Превоз до %s", "Carriage to %s",
     "Пловдив|Варна|Бургас|Русе|Стара Загора|Плевен|Велико "
     "Търново|Габрово|Букурещ|Солун|Истанбул|Белград|"
     "Виена|Мюнхен",
     "Plovdiv|Varna|Burgas|Ruse|Stara Zagora|Pleven|Veliko Tarnovo|Gabrovo|Bucharest|Thessaloniki|"
     "Istanbul|Belgrade|Vienna|Munich",
     700, 0, 18000, 9500, 2},
    {kPricedServices, "Калибриране на %s", "Calibration of %s",
     "шублери|микрометри|динамометрични ключове|манометри|везни|термодвойки|твърдомери|калибри",
     "calipers|micrometers|torque wrenches|pressure gauges|scales|thermocouples|hardness "
     "testers|gauges",
     100, 0, 1850, 640, 12},
    {kPricedServices, "Термична обработка: %s", "Heat treatment: %s",
     "закаляване|цементация|азотиране|отгряване|ТВЧ",
     "hardening|carburising|nitriding|annealing|induction hardening", 201, 1, 95, 38, 300},
    {kPricedServices, "Покритие: %s", "Coating: %s", "цинк|никел|хром|прахово боядисване|елоксация",
     "zinc|nickel|chrome|powder coating|anodising", 501, 2, 640, 210, 60},
    {kRepairs, "Ремонт на %s", "Repair of %s",
     "стругове|фрези|преси|кранове|мотокари|компресори|покриви|осветление|отопление|врати",
     "lathes|milling machines|presses|cranes|forklifts|compressors|roofs|lighting|heating|doors",
     601, 0, 2600, 180, 24},
    {kServices, "Обучение по %s", "Training in %s",
     "заваряване|безопасност|първа помощ|качество|английски език|ЦПУ програмиране",
     "welding|safety|first aid|quality|English|CNC programming", kWorkingDay, 1, 24000, 3200, 2},
    {kServices, "Консултации по %s", "Consulting on %s", "данъци|патенти|околна среда|енергия",
     "taxes|patents|environment|energy", 601, 0, 5500, 900, 16},
    {kSubscriptions, "Абонамент: %s", "Subscription: %s",
     "нормативна база|поддръжка на мрежи|асансьори|охрана|почистване на офиси|озеленяване",
     "law database|network support|lifts|security|office cleaning|landscaping", 701, 0, 14000, 8800,
     6},
    {kEntertainment, "Представителна услуга: %s", "Hospitality: %s", "кетъринг|хотел|подаръци",
     "catering|hotel|gifts", 700, 0, 12000, 9000, 3},
};

std::vector<std::string_view> Parts(std::string_view text) {
  std::vector<std::string_view> parts;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find('|', begin), text.size());
    parts.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

/// A size for the second language: the letter "х" between figures is a sign there.
std::string SizeInLatin(std::string_view size) {
  constexpr std::string_view kBy = "х";
  std::string latin;
  for (std::size_t begin = 0; begin <= size.size();) {
    const std::size_t end = std::min(size.find(kBy, begin), size.size());
    if (begin > 0) latin += "x";
    latin += InLatin(size.substr(begin, end - begin));
    begin = end + kBy.size();
  }
  return latin;
}

void AddMaterials(std::vector<DemoEntry>& entries) {
  std::int64_t first = kFirstSerial;
  for (const Family& family : kFamilies) {
    const auto sizes = Parts(family.sizes);
    const auto sizes2 = Parts(family.sizes2);
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      const auto index = static_cast<std::int32_t>(i);
      DemoEntry entry;
      entry.serialNumber = first + index;
      entry.material =
          kFirstMaterial + static_cast<std::int32_t>(entry.serialNumber - kFirstSerial);
      entry.kind = family.kind;
      entry.name = Filled(family.name, sizes[i]);
      entry.name2 = Filled(family.name2,
                           family.sizes2.empty() ? SizeInLatin(sizes[i]) : std::string(sizes2[i]));
      entry.measure = family.measure;
      entry.incomeMeasure = family.incomeMeasure;
      entry.barCodeMeasure = family.barCodeMeasure;
      entry.decimals = family.decimals;
      entry.priceCents = family.priceCents + family.growthCents * index;
      entry.usual = family.usual;
      entries.push_back(std::move(entry));
    }
    first += kSerialsOfFamily;
  }
}

void AddServices(std::vector<DemoEntry>& entries) {
  std::int32_t code = 0;
  for (const ServiceFamily& family : kServiceFamilies) {
    const auto objects = Parts(family.objects);
    const auto objects2 = Parts(family.objects2);
    for (std::size_t i = 0; i < objects.size(); ++i) {
      DemoEntry entry;
      entry.serialNumber = kFirstServiceSerial + code;
      entry.service = ++code;
      entry.kind = family.kind;
      entry.name = Filled(family.name, objects[i]);
      entry.name2 = Filled(family.name2, objects2[i]);
      entry.measure = family.measure;
      entry.decimals = family.decimals;
      entry.priceCents = family.priceCents + family.growthCents * static_cast<std::int64_t>(i);
      entry.usual = family.usual;
      entries.push_back(std::move(entry));
    }
  }
}

constexpr Date kPriceDays[] = {{20089}, {20270}, {20454}};  // 1 January and July 2025, January 2026
constexpr std::int64_t kPricePercents[] = {100, 102, 105};

std::vector<DemoEntry> AllEntries() {
  std::vector<DemoEntry> entries;
  AddMaterials(entries);
  AddServices(entries);
  return entries;
}

}  // namespace

const std::vector<DemoEntry>& DemoEntries() {
  static const std::vector<DemoEntry> entries = AllEntries();
  return entries;
}

std::int64_t DemoVatPercent(const DemoEntry& entry) {
  const bool training = entry.kind == kServices && entry.measure == kWorkingDay;
  if (training) return 0;
  return entry.kind == kEntertainment ? 9 : kUsualVat;
}

std::span<const Date> DemoPriceDays() {
  return kPriceDays;
}

std::int64_t DemoPriceOn(const DemoEntry& entry, Date day) {
  std::size_t at = std::size(kPriceDays) - 1;
  while (at > 0 && kPriceDays[at] > day)
    --at;
  return (entry.priceCents * kPricePercents[at] + 50) / 100;
}

}  // namespace orvane::server
