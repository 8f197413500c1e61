-- 0015_seen_indexes.sql
-- Why: a move to the next document is one seek for each reason to see it. An index by reason and identifier did not hold
-- a planner to that: where it expected many matches it walked all identifiers instead, also for users who see one in a
-- thousand. The expression "+ 0" makes the order of these indexes one that no other index has.

drop index if exists PurchaseOrderByCreator;
drop index if exists PurchaseOrderByNotifier;
drop index if exists PurchaseOrderByCostCenter;
drop index if exists PurchaseOrderByStatus;
create index PurchaseOrderSeenByCreator on PurchaseOrder (CreatedFrom, POIdNumber + 0) where OldVersion = 0;
create index PurchaseOrderSeenByNotifier on PurchaseOrder (Notifier, POIdNumber + 0) where OldVersion = 0;
create index PurchaseOrderSeenByCostCenter on PurchaseOrder (CostCenter, POIdNumber + 0) where OldVersion = 0;
create index PurchaseOrderSeenByStatus on PurchaseOrder (Status, POIdNumber + 0) where OldVersion = 0;
-- Filters of the report, which is ordered by the whole key.
create index PurchaseOrderByCreator on PurchaseOrder (CreatedFrom, POIdNumber, POVersion);
create index PurchaseOrderByNotifier on PurchaseOrder (Notifier, POIdNumber, POVersion);
create index PurchaseOrderByCostCenter on PurchaseOrder (CostCenter, POIdNumber, POVersion);
create index PurchaseOrderByStatus on PurchaseOrder (Status, POIdNumber, POVersion);
create index PurchaseOrderAnnulled on PurchaseOrder (POIdNumber, POVersion) where AnnulOn is not null;

drop index if exists SuppManifacOrderByCreator;
drop index if exists SuppManifacOrderByNotifier;
drop index if exists SuppManifacOrderByCostCenter;
create index SuppManifacOrderSeenByCreator on SuppManifacOrder (CreatedFrom, IdNumber + 0);
create index SuppManifacOrderSeenByNotifier on SuppManifacOrder (Notifier, IdNumber + 0);
create index SuppManifacOrderSeenByCostCenter on SuppManifacOrder (CostCenter, IdNumber + 0);
