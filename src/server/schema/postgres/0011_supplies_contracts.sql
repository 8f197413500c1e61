-- 0011_supplies_contracts.sql
-- Why: contracts with suppliers, under which orders and requests are made.

create table SuppliesContracts (
  IdNumber            integer not null primary key,
  Supplier            bigint not null references Partners (Partner),
  ContractNumber      text not null,
  ShortDescription    text not null,
  ShortDescription2   text,
  FoldShortDescription  text collate "C" not null,
  FoldShortDescription2 text collate "C",
  Description         text,
  Description2        text,
  ContractDate        date not null,
  FreezeDate          date,
  FinishDate          date,
  AutomaticRenewal    smallint not null default 0 check (AutomaticRenewal in (0, 1)),
  NoticePeriod        smallint,
  KindContract        smallint not null references KindSupplies (Code),
  CapExPlanCode       integer references CapExPlan (Code),
  DeliveryTimes       text,
  DeliveryTimes2      text,
  MinOrderDelivery    text,
  MinOrderDelivery2   text,
  ManifacOrder        smallint not null default 0 check (ManifacOrder in (0, 1)),
  SupplyRequestDescr  smallint references SupplyRequestDescr (Code),
  SupplyArtVchDescr   smallint references SupplyArtVchDescr (Code),
  ToSupplyArtVchDescr smallint references SupplyArtVchDescr (Code),
  SupplyInvoiceDescr  smallint references SupplyInvoiceDescr (Code),
  SuppAdvInvDescr     smallint references SupplyInvoiceDescr (Code),
  SuppDNoticeDescr    smallint references SupplyInvoiceDescr (Code),
  SuppCNoticeDescr    smallint references SupplyInvoiceDescr (Code),
  KindSupplyList      smallint references KindSupplyLists (Code),
  KindSupplyChoice    smallint not null,
  InclTransportInPrice smallint not null default 0 check (InclTransportInPrice in (0, 1)),
  UseQuantityRabat    smallint not null default 0 check (UseQuantityRabat in (0, 1)),
  SuppElKindPayment   bigint,
  MaxTermOfPayment    smallint,
  CreatedFrom         text collate "C" not null,
  CreatedOn           timestamptz not null,
  AmendFrom           text collate "C",
  AmendOn             timestamptz
);
create index SuppliesContractsBySupplier on SuppliesContracts (Supplier, KindContract, IdNumber);
create index SuppliesContractsByFoldDescription on SuppliesContracts (FoldShortDescription, IdNumber);
create index SuppliesContractsByFoldDescription2 on SuppliesContracts (FoldShortDescription2 nulls first, IdNumber);
