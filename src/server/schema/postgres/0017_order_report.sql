-- 0017_order_report.sql
-- Why: the search report of supplier orders goes by identifier and reads one portion of what one of its filters leaves;
-- with the filter's column before the identifier that is a range and not a sort.

create index SuppManifacOrderByCostCenter on SuppManifacOrder (CostCenter, IdNumber);
create index SuppManifacOrderBySupplierNumber on SuppManifacOrder (Supplier, IdNumber);
create index SuppManifacOrderByStatus on SuppManifacOrder (Status, IdNumber);
