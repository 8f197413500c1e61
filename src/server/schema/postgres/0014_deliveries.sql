-- 0014_deliveries.sql
-- Why: deliveries received against purchase requests.

create table Deliveries (
  IdNumber          integer not null primary key,
  DeliveryDate      date not null,
  PODeliveryDate    date not null,
  PurchaseOrderId   integer not null,
  PurchaseOrderVer  smallint not null,
  KindSupply        smallint not null references KindSupplies (Code),
  Supplier          bigint not null references Partners (Partner),
  Store             integer references Stores (Code),
  StoreDocId        integer,
  SuppDocNumber     text,
  SuppDocDate       date,
  CarNumber         text,
  -- Element of nomenclature 250: 1 no, 2 yes.
  IncTranspInPrice  smallint check (IncTranspInPrice in (1, 2)),
  SupplyInvoiceId   integer,
  SupplyPrInvoiceId integer,
  Difference        smallint not null default 0 check (Difference in (0, 1)),
  OutsideTolerance  smallint not null default 0 check (OutsideTolerance in (0, 1)),
  Status            smallint not null check (Status between 0 and 7),
  CreatedFrom       text collate "C" not null,
  CreatedOn         timestamptz not null,
  AmendFrom         text collate "C",
  AmendOn           timestamptz,
  ConfirmedFrom     text collate "C",
  ConfirmedOn       timestamptz,
  AnnulFrom         text collate "C",
  AnnulOn           timestamptz,
  PrevYearId        integer,
  SendingNumber     integer not null default 0,
  SentFrom          text collate "C",
  SentOn            timestamptz,
  foreign key (PurchaseOrderId, PurchaseOrderVer) references PurchaseOrder (POIdNumber, POVersion)
);
create index DeliveriesByRequest on Deliveries (PurchaseOrderId, PurchaseOrderVer, IdNumber);
create index DeliveriesByCreator on Deliveries (CreatedFrom, IdNumber);

create table DeliveryRows (
  DeliveryId       integer not null references Deliveries (IdNumber),
  RowNumber        smallint not null check (RowNumber > 0),
  SerialNumber     bigint not null references BaseSupplyList (SerialNumber),
  InventoryId      integer references MaterialStocks (IdNumber),
  ServiceCode      integer references Services (Code),
  Measure          smallint not null references Measures (Code),
  Quantity         double precision not null check (Quantity >= 0),
  Numerator        integer not null check (Numerator > 0),
  RowNumerator     integer not null check (RowNumerator > 0),
  LimitFitness     date,
  LotNumber        text,
  Remarks          text,
  Remarks2         text,
  Difference       smallint not null default 0 check (Difference in (0, 1)),
  OutsideTolerance smallint not null default 0 check (OutsideTolerance in (0, 1)),
  primary key (DeliveryId, RowNumber)
);
create index DeliveryRowsBySerial on DeliveryRows (SerialNumber, DeliveryId);
