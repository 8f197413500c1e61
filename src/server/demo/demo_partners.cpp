#include "server/demo/demo_partners.h"

#include <array>

#include "server/demo/demo_random.h"
#include "server/demo/demo_text.h"

namespace orvane::server {
namespace {

constexpr DemoTown kTowns[] = {
    {1000, "София", "Sofia"},
    {4000, "Пловдив", "Plovdiv"},
    {5000, "Велико Търново", "Veliko Tarnovo"},
    {5300, "Габрово", "Gabrovo"},
    {5800, "Плевен", "Pleven"},
    {6000, "Стара Загора", "Stara Zagora"},
    {6100, "Казанлък", "Kazanlak"},
    {6300, "Хасково", "Haskovo"},
    {7000, "Русе", "Ruse"},
    {8000, "Бургас", "Burgas"},
    {8600, "Ямбол", "Yambol"},
    {8800, "Сливен", "Sliven"},
    {9000, "Варна", "Varna"},
    {9300, "Добрич", "Dobrich"},
    {9700, "Шумен", "Shumen"},
};

/// What a company sells, in the words of its name. Words are Bulgarian; the second name is
/// transliterated.
struct Trade {
  DemoKind kind;
  int count;  ///< of companies
  std::array<std::string_view, 6> words;
};
constexpr Trade kTrades[] = {
    {kRawMaterials, 62, {"Метал", "Стомана", "Крепеж", "Лагер", "Профил", "Алумин"}},
    {kWares, 28, {"Хидравлик", "Помпи", "Арматура", "Редуктор", "Пневмо", "Вентил"}},
    {kOtherMaterials, 42, {"Инструмент", "Офис", "Опаковки", "Защита", "Хартия", "Абразив"}},
    {kPricedServices, 20, {"Спедиция", "Карго", "Галваник", "Метрология", "Термо", "Покрития"}},
    {kServices, 14, {"Консулт", "Обучение", "Патент", "Експерт", "Одит", "Проект"}},
    {kRepairs, 12, {"Ремонт", "Сервиз", "Монтаж", "Строй", "Електро", "Климат"}},
    {kSubscriptions, 8, {"Мрежи", "Охрана", "Информ", "Чистота", "Лифт", "Паркове"}},
    {kCapital, 8, {"Машини", "Струг", "Техника", "Автомат", "Робот", "Компресор"}},
    {kEntertainment, 4, {"Кетъринг", "Хотел", "Подарък", "Гост", "Банкет", "Ресторант"}},
};
constexpr std::string_view kSecondWords[] = {
    "Марица", "Балкан", "Родопи", "Тракия", "Дунав",   "Рила",  "Пирин", "Искър",
    "Янтра",  "Тунджа", "Вихър",  "Елит",   "Прогрес", "Темпо", "Сигма", "Вектор",
    "Орион",  "Делта",  "Бриз",   "Юг",     "Запад",   "Център"};
constexpr std::string_view kForms[] = {"ООД", "ЕООД", "ООД", "ЕООД", "АД"};
constexpr std::string_view kForms2[] = {"OOD", "EOOD", "OOD", "EOOD", "AD"};
constexpr std::string_view kStreets[] = {"Индустриална",    "Околовръстна", "Христо Ботев",
                                         "Васил Левски",    "Цар Симеон",   "Капитан Райчо",
                                         "Шести септември", "Рила"};

/// Companies abroad stand as they are called.
struct Foreign {
  std::string_view name;
  std::string_view address;
  std::int16_t currency;
  DemoKind trade;
};
constexpr Foreign kForeign[] = {
    {"Anadolu Metal Sanayi A.S.", "Organize Sanayi 14, Bursa", kTurkishLira, kRawMaterials},
    {"Marmara Civata Ltd. Sti.", "Ikitelli Cad. 88, Istanbul", kTurkishLira, kRawMaterials},
    {"Ege Hidrolik A.S.", "Ataturk OSB 10021, Izmir", kTurkishLira, kWares},
    {"Ningbo Eastlake Bearings Co.", "Jiangbei 221, Ningbo", kYuan, kRawMaterials},
    {"Wenzhou Hengtai Valve Co.", "Longwan 37, Wenzhou", kYuan, kWares},
    {"Qingdao Northfield Tools Co.", "Chengyang 5, Qingdao", kYuan, kOtherMaterials},
    {"Midland Fasteners Supply Inc.", "1400 Canal St., Dayton", kDollar, kRawMaterials},
    {"Great Lakes Fluid Power LLC", "77 Harbor Rd., Toledo", kDollar, kWares},
    {"Prairie Machine Tool Corp.", "230 Mill Rd., Moline", kDollar, kCapital},
    {"Severnside Abrasives Ltd.", "Unit 9, Dock Lane, Newport", kPound, kOtherMaterials},
    {"Pennine Gauge Works Ltd.", "12 Mill Brow, Oldham", kPound, kPricedServices},
    {"Oberland Werkzeug GmbH", "Seestrasse 40, Kempten", kEuro, kOtherMaterials},
    {"Neckartal Maschinen GmbH", "Talweg 3, Heilbronn", kEuro, kCapital},
    {"Acciai della Brianza S.r.l.", "Via Cava 18, Lecco", kEuro, kRawMaterials},
    {"Makedonia Aloumini A.E.", "Industrial Area, Thessaloniki", kEuro, kRawMaterials},
    {"Carpatica Transport S.R.L.", "Str. Garii 7, Giurgiu", kEuro, kPricedServices},
};
constexpr std::string_view kCustomers[] = {"Агромаш", "Водоканал Изток", "Енергоремонт",
                                           "Хидрострой"};

/// Terms of a supplier: mostly the company's own, now and then something else.
void AgreeTerms(DemoPartner& partner, DemoRandom& random) {
  constexpr std::int16_t kDays[] = {0, 0, 15, 30, 45, 60};
  partner.paymentDays = random.Of(kDays);
  if (partner.trade != kRawMaterials && partner.trade != kWares) return;
  if (random.Percent(60)) return;
  partner.choice = static_cast<std::int16_t>(random.Between(1, 3));
  partner.list = partner.choice == 2 || random.Percent(50) ? 0 : 2;
  if (partner.choice == 2) partner.choice = 3;  // "on the very day" suits auctions only
}

std::string Telephone(DemoRandom& random) {
  return "+359 " + std::to_string(random.Between(30, 99)) + " " +
         std::to_string(random.Between(100000, 999999));
}

DemoPartner Domestic(std::int64_t code, const std::string& word, DemoRandom& random) {
  DemoPartner partner;
  partner.code = code;
  const int form = random.Below(static_cast<int>(std::size(kForms)));
  const auto at = static_cast<std::size_t>(form);
  partner.name = "„" + word + "“ " + std::string(kForms[at]);
  partner.name2 = InLatin("„" + word + "“") + " " + std::string(kForms2[at]);
  const DemoTown& town = random.Of(kTowns);
  partner.town = town.code;
  const std::string number = std::to_string(random.Between(1, 180));
  const std::string street(random.Of(kStreets));
  partner.address = "ул. " + street + " " + number;
  partner.address2 = number + " " + InLatin(street) + " St.";
  partner.telephone = Telephone(random);
  partner.email = "office" + std::to_string(code) + "@example.bg";
  // Numbers from 99 on are given to nobody.
  partner.eik = WithCheckDigit("99" + std::to_string(random.Between(10, 99)) +
                               std::to_string(code).substr(0, 4));
  return partner;
}

void AddDomestic(std::vector<DemoPartner>& partners, std::int64_t& code, std::uint32_t seed) {
  for (const Trade& trade : kTrades) {
    for (int i = 0; i < trade.count; ++i) {
      DemoRandom random(seed, "partner", static_cast<std::uint64_t>(code));
      const auto first = static_cast<std::size_t>(i) % trade.words.size();
      const auto second = static_cast<std::size_t>(i) / trade.words.size() +
                          static_cast<std::size_t>(trade.kind) * 2 + first;
      const std::string word = std::string(trade.words[first]) + " " +
                               std::string(kSecondWords[second % std::size(kSecondWords)]);
      DemoPartner partner = Domestic(code++, word, random);
      partner.trade = trade.kind;
      AgreeTerms(partner, random);
      partners.push_back(std::move(partner));
    }
  }
}

void AddForeign(std::vector<DemoPartner>& partners, std::int64_t& code, std::uint32_t seed) {
  for (const Foreign& row : kForeign) {
    DemoRandom random(seed, "partner", static_cast<std::uint64_t>(code));
    DemoPartner partner;
    partner.code = code++;
    partner.name = row.name;
    partner.name2 = row.name;
    partner.trade = row.trade;
    partner.currency = row.currency;
    partner.address = row.address;
    partner.address2 = row.address;
    partner.email = "sales" + std::to_string(partner.code) + "@example.com";
    AgreeTerms(partner, random);
    partners.push_back(std::move(partner));
  }
}

}  // namespace

std::span<const DemoTown> DemoTowns() {
  return kTowns;
}

std::vector<DemoPartner> DemoPartners(std::uint32_t seed) {
  std::vector<DemoPartner> partners;
  DemoPartner bank;
  bank.code = kCentralBank;
  bank.name = "Централна банка";
  bank.name2 = "Central Bank";
  bank.supplier = false;
  bank.town = 1000;
  partners.push_back(bank);
  std::int64_t code = 4001;
  for (const std::string_view word : kCustomers) {
    DemoRandom random(seed, "partner", static_cast<std::uint64_t>(code));
    DemoPartner customer = Domestic(code++, std::string(word), random);
    customer.supplier = false;
    partners.push_back(std::move(customer));
  }
  code = kFirstSupplier;
  AddDomestic(partners, code, seed);
  AddForeign(partners, code, seed);
  return partners;
}

std::int32_t DemoInvoiceDescr(DemoKind kind) {
  if (kind == kWares) return 2;
  if (kind == kCapital) return 4;
  return kind == kRawMaterials || kind == kOtherMaterials ? 1 : 3;
}

std::vector<const DemoEntry*> DemoOffer(const DemoPartner& supplier) {
  constexpr std::size_t kMost = 32;
  std::vector<const DemoEntry*> trade;
  for (const DemoEntry& entry : DemoEntries()) {
    if (entry.kind == supplier.trade) trade.push_back(&entry);
  }
  if (trade.size() <= kMost) return trade;
  std::vector<const DemoEntry*> offer;
  auto at = static_cast<std::size_t>(supplier.code) * 17 % trade.size();
  for (std::size_t i = 0; i < kMost; ++i)
    offer.push_back(trade[at++ % trade.size()]);
  return offer;
}

}  // namespace orvane::server
