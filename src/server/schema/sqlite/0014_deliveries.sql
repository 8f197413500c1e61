-- 0014_deliveries.sql
-- Why: deliveries received against purchase requests.

create table Deliveries (
  IdNumber          integer not null primary key,
  DeliveryDate      integer not null,
  PODeliveryDate    integer not null,
  PurchaseOrderId   integer not null,
  PurchaseOrderVer  integer not null,
  KindSupply        integer not null references KindSupplies (Code),
  Supplier          integer not null references Partners (Partner),
  Store             integer references Stores (Code),
  StoreDocId        integer,
  SuppDocNumber     text,
  SuppDocDate       integer,
  CarNumber         text,
  -- Element of nomenclature 250: 1 no, 2 yes.
  IncTranspInPrice  integer check (IncTranspInPrice in (1, 2)),
  SupplyInvoiceId   integer,
  SupplyPrInvoiceId integer,
  Difference        integer not null default 0 check (Difference in (0, 1)),
  OutsideTolerance  integer not null default 0 check (OutsideTolerance in (0, 1)),
  Status            integer not null check (Status between 0 and 7),
  CreatedFrom       text not null,
  CreatedOn         integer not null,
  AmendFrom         text,
  AmendOn           integer,
  ConfirmedFrom     text,
  ConfirmedOn       integer,
  AnnulFrom         text,
  AnnulOn           integer,
  PrevYearId        integer,
  SendingNumber     integer not null default 0,
  SentFrom          text,
  SentOn            integer,
  foreign key (PurchaseOrderId, PurchaseOrderVer) references PurchaseOrder (POIdNumber, POVersion)
) strict;
create index DeliveriesByRequest on Deliveries (PurchaseOrderId, PurchaseOrderVer, IdNumber);
create index DeliveriesByCreator on Deliveries (CreatedFrom, IdNumber);

create table DeliveryRows (
  DeliveryId       integer not null references Deliveries (IdNumber),
  RowNumber        integer not null check (RowNumber > 0),
  SerialNumber     integer not null references BaseSupplyList (SerialNumber),
  InventoryId      integer references MaterialStocks (IdNumber),
  ServiceCode      integer references Services (Code),
  Measure          integer not null references Measures (Code),
  Quantity         real not null check (Quantity >= 0),
  Numerator        integer not null check (Numerator > 0),
  RowNumerator     integer not null check (RowNumerator > 0),
  LimitFitness     integer,
  LotNumber        text,
  Remarks          text,
  Remarks2         text,
  Difference       integer not null default 0 check (Difference in (0, 1)),
  OutsideTolerance integer not null default 0 check (OutsideTolerance in (0, 1)),
  primary key (DeliveryId, RowNumber)
) strict, without rowid;
create index DeliveryRowsBySerial on DeliveryRows (SerialNumber, DeliveryId);
