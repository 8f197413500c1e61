-- 0011_supplies_contracts.sql
-- Why: contracts with suppliers, under which orders and requests are made.

create table SuppliesContracts (
  IdNumber            integer not null primary key,
  Supplier            integer not null references Partners (Partner),
  ContractNumber      text not null,
  ShortDescription    text not null,
  ShortDescription2   text,
  FoldShortDescription  text not null,
  FoldShortDescription2 text,
  Description         text,
  Description2        text,
  ContractDate        integer not null,
  FreezeDate          integer,
  FinishDate          integer,
  AutomaticRenewal    integer not null default 0 check (AutomaticRenewal in (0, 1)),
  NoticePeriod        integer,
  KindContract        integer not null references KindSupplies (Code),
  CapExPlanCode       integer references CapExPlan (Code),
  DeliveryTimes       text,
  DeliveryTimes2      text,
  MinOrderDelivery    text,
  MinOrderDelivery2   text,
  ManifacOrder        integer not null default 0 check (ManifacOrder in (0, 1)),
  SupplyRequestDescr  integer references SupplyRequestDescr (Code),
  SupplyArtVchDescr   integer references SupplyArtVchDescr (Code),
  ToSupplyArtVchDescr integer references SupplyArtVchDescr (Code),
  SupplyInvoiceDescr  integer references SupplyInvoiceDescr (Code),
  SuppAdvInvDescr     integer references SupplyInvoiceDescr (Code),
  SuppDNoticeDescr    integer references SupplyInvoiceDescr (Code),
  SuppCNoticeDescr    integer references SupplyInvoiceDescr (Code),
  KindSupplyList      integer references KindSupplyLists (Code),
  KindSupplyChoice    integer not null,
  InclTransportInPrice integer not null default 0 check (InclTransportInPrice in (0, 1)),
  UseQuantityRabat    integer not null default 0 check (UseQuantityRabat in (0, 1)),
  SuppElKindPayment   integer,
  MaxTermOfPayment    integer,
  CreatedFrom         text not null,
  CreatedOn           integer not null,
  AmendFrom           text,
  AmendOn             integer
) strict;
create index SuppliesContractsBySupplier on SuppliesContracts (Supplier, KindContract, IdNumber);
create index SuppliesContractsByFoldDescription on SuppliesContracts (FoldShortDescription, IdNumber);
create index SuppliesContractsByFoldDescription2 on SuppliesContracts (FoldShortDescription2, IdNumber);
