-- 0018_order_amounts.sql
-- Why: a row of an order keeps what it amounted to when it was priced, so that the order's sums are those of its rows and
-- stay so when a price list changes.

alter table SuppManOrderDet add column CurrSumWithoutVAT integer not null default 0;
