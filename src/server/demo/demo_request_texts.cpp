#include "server/demo/demo_request.h"

#include <string>
#include <string_view>

#include "server/demo/demo_text.h"

namespace orvane::server {
namespace {

/// Texts in two languages; "%s" is a number of an order, a machine or a room.
struct Pair {
  std::string_view text;
  std::string_view text2;
};
struct KindText {
  DemoKind kind;
  Pair pair;
};
constexpr KindText kDescriptions[] = {
    {kCapital,
     {"Закупуване на машина по плана за капиталови разходи, позиция %s",
      "Purchase of a machine, line %s of the capital plan"}},
    {kCapital,
     {"Подмяна на амортизирано оборудване, инв. № %s",
      "Replacement of worn-out equipment, inv. no. %s"}},
    {kRawMaterials,
     {"Материали за производствена поръчка № %s", "Materials for production order no. %s"}},
    {kRawMaterials, {"Метал за серия № %s", "Metal for series no. %s"}},
    {kRawMaterials,
     {"Попълване на минималния запас, група %s", "Replenishment of minimum stock, group %s"}},
    {kRawMaterials,
     {"Крепежни елементи за монтаж на изделие № %s",
      "Fasteners for the assembly of product no. %s"}},
    {kWares, {"Стоки за клиентска поръчка № %s", "Goods for customer order no. %s"}},
    {kWares, {"Зареждане на търговския склад, рафт %s", "Stocking the trade store, shelf %s"}},
    {kPricedServices,
     {"Превоз и обработка за експедиция № %s", "Carriage and handling for shipment no. %s"}},
    {kPricedServices,
     {"Външна обработка на детайли, партида %s", "Outside processing of parts, batch %s"}},
    {kOtherMaterials,
     {"Инструмент и консумативи за участък %s", "Tools and consumables for area %s"}},
    {kOtherMaterials,
     {"Лични предпазни средства за бригада %s", "Protective equipment for team %s"}},
    {kOtherMaterials, {"Канцеларски материали за стая %s", "Office supplies for room %s"}},
    {kOtherMaterials, {"Опаковки за експедиция № %s", "Packaging for shipment no. %s"}},
    {kMixed, {"Материали и стоки по проект № %s", "Materials and goods for project no. %s"}},
    {kServices, {"Обучение на служители, група %s", "Training of employees, group %s"}},
    {kServices, {"Консултация по договор № %s", "Advice on contract no. %s"}},
    {kEntertainment, {"Посрещане на делегация № %s", "Reception of delegation no. %s"}},
    {kSubscriptions, {"Подновяване на абонамент № %s", "Renewal of subscription no. %s"}},
    {kRepairs, {"Ремонт на машина с инв. № %s", "Repair of the machine with inv. no. %s"}},
    {kRepairs, {"Планова поддръжка по график № %s", "Planned maintenance, schedule no. %s"}},
};
constexpr Pair kRationales[] = {
    {"Наличността е под минималната.", "The stock is below its minimum."},
    {"Необходимо за изпълнение на месечния план.", "Needed to fulfil the monthly plan."},
    {"По искане на клиента срокът е скъсен.", "The term was shortened at the customer's request."},
    {"Предписание от последния одит.", "Required by the last audit."},
    {"Старите са износени и не подлежат на ремонт.", "The old ones are worn out beyond repair."},
    {"Сравнени са три оферти, тази е най-изгодната.",
     "Three offers were compared, this is the best one."},
};

}  // namespace

void DescribeRequest(DemoRequest& request, DemoRandom& random) {
  std::vector<const Pair*> pairs;
  for (const KindText& row : kDescriptions) {
    if (row.kind == request.kind) pairs.push_back(&row.pair);
  }
  const Pair& pair = *random.Of(std::span<const Pair* const>(pairs));
  const std::string number = std::to_string(random.Between(101, 9899));
  request.description = Filled(pair.text, number);
  request.description2 = Filled(pair.text2, number);
  if (!random.Percent(45)) return;
  const Pair& rationale = random.Of(kRationales);
  request.rationale = rationale.text;
  request.rationale2 = rationale.text2;
}

}  // namespace orvane::server
