-- 0020_orders_to_request.sql
-- Why: whoever may request for a cost centre finds its approved orders, one seek for each cost centre.

create index SuppManifacOrderSeenToRequest on SuppManifacOrder (CostCenter, IdNumber + 0) where Status in (5, 6, 7);
