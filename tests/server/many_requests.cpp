#include "server/many_requests.h"

namespace orvane::server {

void FillManyRequests(RequestWorld& world, int count) {
  ASSERT_EQ(world.AddOrder(20, 1000), kRareOrder);
  world.RunSql("insert into CostCenters (CostCenter, Name, FoldName) values (1003, 'Цех', 'цех')");
  const std::string numbers =
      "with recursive n (i) as (select 1 union all select i + 1 from n "
      "where i < " +
      std::to_string(count) + ") ";
  const Date day = *Date::FromYmd(2026, 3, 1);
  const Date rareDay = *Date::FromYmd(2026, 4, 1);
  const Variant money = *Decimal::Parse("1")->AtScale(4);
  const auto fill = [&](const std::string& table, const std::string& columns,
                        const std::string& values, VariantArray params,
                        const std::string& from = " from n") {
    world.RunSql(
        "insert into " + table + " (" + columns + ") " + numbers + "select " + values + from,
        std::move(params));
  };
  fill("PurchaseOrder",
       "POIdNumber, POVersion, DocumentDate, CostCenter, Notifier, Supplier, KindSupply,"
       " IncTranspInPrice, KindCurrency, RateOfExchange, CreatedFrom, CreatedOn, Status, AnnulOn",
       "i, 1, case when i <= 5 then ?1 else ?2 end, case when i <= 5 then 1003 when i % 1000 = 0 or"
       " i in (200, 300, 400) then 1001 else 1002 end, 100, case when i <= 5 then 8 else 7 end,"
       " case when i <= 5 then 3 else 4 end, 1, 1, ?3, 'author', ?4,"
       " case when i <= 5 then 1 else 2 + i % 6 end, case when i <= 5 then ?4 end",
       {rareDay, day, *Decimal::Parse("1")->AtScale(7), Stamp{1}});
  fill("PurchaseOrderDet",
       "PurchaseOrderId, PurchaseOrderVer, RowNumber, SerialNumber, Measure, SuppManifacOrderId,"
       " Quantity, Numerator, RowNumerator, CurrSumWithoutVAT",
       "i, 1, r, case when i <= 5 and r = 2 then 21 else 20 end, 200,"
       " case when i <= 5 and r = 1 then 1 end, 1, 1000, 1000, ?1",
       {money}, " from n cross join (select 1 as r union all select 2) two");
  fill("ApprovalTurn", "Employee, KindRegister, DocumentId, DocumentVersion", "102, 2, i, 1", {},
       " from n where i % 2 = 0");
  fill("PurchaseOrderDel", "PurchaseOrderId, PurchaseOrderVer, DeliveryDate", "i, 1, ?1", {day});
  fill("PurchaseOrderPayPl",
       "PurchaseOrderId, PurchaseOrderVer, RowNumber, InvoiceDate, SumWithVAT, PaymentDate",
       "i, 1, 1, ?1, ?2, ?1", {day, money});
  fill("PurchaseOrderAdm",
       "PurchaseOrderId, PurchaseOrderVer, ConfirmationLevel, SendingNumber, Approval, Status",
       "i, 1, 1, 1, 1, 2", {});
  fill("Deliveries",
       "IdNumber, DeliveryDate, PODeliveryDate, PurchaseOrderId, PurchaseOrderVer, KindSupply,"
       " Supplier, Status, CreatedFrom, CreatedOn",
       "i, ?1, ?1, i, 1, 4, 7, 2, 'author', ?2", {day, Stamp{1}});
  fill("BaseSupplyList",
       "SerialNumber, Name, FoldName, EffectiveName, FoldEffectiveName, Kind, Measure",
       "1000 + i, 'Запис', 'запис', 'Запис', 'запис', 1, 200", {});
  fill("SuppManifacOrder",
       "IdNumber, DocumentDate, CostCenter, KindSupply, Supplier, KindCurrency, Notifier,"
       " CreatedFrom, CreatedOn, Status",
       "1 + i, ?1, case when i % 1000 = 0 or i in (200, 300, 400) then 1001 else 1002 end, 3, 7, 1,"
       " 100, 'author', ?2, 2",
       {day, Stamp{1}});
  fill("SuppManOrderDet",
       "SuppManOrderId, RowNumber, SerialNumber, Measure, Quantity, RowNumerator, Numerator",
       "1 + i, 1, 20, 200, 1, 1000, 1000", {});
  fill("SuppManOrderAdmin", "SuppManOrderId, ConfirmationLevel, SendingNumber, Approval, Status",
       "1 + i, 1, 1, 1, 2", {});
  fill("History", "TableName, RowKey, ColumnName, ChangedBy, ChangedOn, MachineName, Kind",
       "'PurchaseOrder', cast(i as text), 'Status', 'author', ?1, 'PC', 'U'", {Stamp{1}});
  fill("ClientKey", "Login, Key, RequestHash, Answer, CreatedOn",
       "'author', 'former' || cast(i as text), '', '', ?1", {world.Server().Time().Now()});
  const auto analyzed = world.Server().Base().RunScript("analyze");
  ASSERT_TRUE(analyzed) << analyzed.GetFailure().text;
}

}  // namespace orvane::server
