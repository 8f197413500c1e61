-- 0013_purchase_requests.sql
-- Why: purchase requests in versions, with their rows, delivery schedule, payment plan and approval rows.

create table PurchaseOrder (
  POIdNumber           integer not null,
  POVersion            smallint not null check (POVersion between 1 and 255),
  DocumentDate         date not null,
  Description          text,
  Description2         text,
  Rationale            text,
  Rationale2           text,
  CostCenter           bigint not null references CostCenters (CostCenter),
  Notifier             bigint not null references Employees (Employee),
  Supplier             bigint references Partners (Partner),
  ContractId           integer references SuppliesContracts (IdNumber),
  KindSupply           smallint not null references KindSupplies (Code),
  -- Element of nomenclature 250: 1 no, 2 yes.
  IncTranspInPrice     smallint not null check (IncTranspInPrice in (1, 2)),
  KindCurrency         smallint not null references Currencies (Code),
  RateOfExchange       numeric(19,7) not null check (RateOfExchange > 0),
  CurrSumPurchaseOrder numeric(19,4) not null default 0,
  SumPurchaseOrder     numeric(19,4) not null default 0,
  CreatedFrom          text collate "C" not null,
  CreatedOn            timestamptz not null,
  AmendFrom            text collate "C",
  AmendOn              timestamptz,
  Status               smallint not null check (Status between 1 and 7),
  AnnulFrom            text collate "C",
  AnnulOn              timestamptz,
  OldVersion           smallint not null default 0 check (OldVersion in (0, 1)),
  -- How many times this version was sent for approval, by whom and when last.
  SendingNumber        integer not null default 0,
  SentFrom             text collate "C",
  SentOn               timestamptz,
  -- Under whose name a request without approval levels was approved.
  ServiceEmployee      bigint references Employees (Employee),
  primary key (POIdNumber, POVersion)
);
-- One version of each request is current; moves between requests walk the current ones.
create unique index PurchaseOrderCurrent on PurchaseOrder (POIdNumber) where OldVersion = 0;
-- Why a user sees a request: one index for each reason, in the order of the moves.
create index PurchaseOrderByCreator on PurchaseOrder (CreatedFrom, POIdNumber);
create index PurchaseOrderByNotifier on PurchaseOrder (Notifier, POIdNumber);
create index PurchaseOrderByCostCenter on PurchaseOrder (CostCenter, POIdNumber);
create index PurchaseOrderByStatus on PurchaseOrder (Status, POIdNumber);
-- Filters of the report.
create index PurchaseOrderByDate on PurchaseOrder (DocumentDate, POIdNumber, POVersion);
create index PurchaseOrderByKind on PurchaseOrder (KindSupply, POIdNumber, POVersion);
create index PurchaseOrderBySupplier on PurchaseOrder (Supplier, POIdNumber, POVersion);
create index PurchaseOrderByContract on PurchaseOrder (ContractId, POIdNumber, POVersion);

create table PurchaseOrderDet (
  PurchaseOrderId    integer not null,
  PurchaseOrderVer   smallint not null,
  RowNumber          smallint not null check (RowNumber > 0),
  SerialNumber       bigint not null references BaseSupplyList (SerialNumber),
  InventoryId        integer references MaterialStocks (IdNumber),
  ServiceCode        integer references Services (Code),
  Measure            smallint not null references Measures (Code),
  SuppManifacOrderId integer references SuppManifacOrder (IdNumber),
  -- Counted in the smallest unit of the measure's block.
  Quantity           double precision not null check (Quantity >= 0),
  -- Size of the entry's own unit, to which its price belongs, and of the row's unit.
  Numerator          integer not null check (Numerator > 0),
  RowNumerator       integer not null check (RowNumerator > 0),
  CurrSumWithoutVAT  numeric(19,4) not null,
  Remarks            text,
  Remarks2           text,
  primary key (PurchaseOrderId, PurchaseOrderVer, RowNumber),
  foreign key (PurchaseOrderId, PurchaseOrderVer) references PurchaseOrder (POIdNumber, POVersion)
);
-- What an order leaves, and the report's filters by order and by entry.
create index PurchaseOrderDetByOrder on PurchaseOrderDet (SuppManifacOrderId, SerialNumber, PurchaseOrderId)
  where SuppManifacOrderId is not null;
create index PurchaseOrderDetBySerial on PurchaseOrderDet (SerialNumber, PurchaseOrderId);

create table PurchaseOrderDel (
  PurchaseOrderId  integer not null,
  PurchaseOrderVer smallint not null,
  DeliveryDate     date not null,
  DateOfLoading    date,
  Delivered        smallint not null default 0 check (Delivered in (0, 1)),
  primary key (PurchaseOrderId, PurchaseOrderVer, DeliveryDate),
  foreign key (PurchaseOrderId, PurchaseOrderVer) references PurchaseOrder (POIdNumber, POVersion)
);

create table PurchaseOrderPayPl (
  PurchaseOrderId  integer not null,
  PurchaseOrderVer smallint not null,
  RowNumber        smallint not null check (RowNumber between 1 and 255),
  InvoiceDate      date not null,
  SumWithVAT       numeric(19,4) not null,
  AdvancePayment   smallint not null default 0 check (AdvancePayment in (0, 1)),
  AdvanceStatement smallint not null default 0 check (AdvanceStatement in (0, 1)),
  PaymentDate      date not null,
  SupplyInvoiceId  integer,
  primary key (PurchaseOrderId, PurchaseOrderVer, RowNumber),
  foreign key (PurchaseOrderId, PurchaseOrderVer) references PurchaseOrder (POIdNumber, POVersion)
);

create table PurchaseOrderAdm (
  PurchaseOrderId   integer not null,
  PurchaseOrderVer  smallint not null,
  ConfirmationLevel smallint not null check (ConfirmationLevel between 1 and 255),
  SendingNumber     integer not null,
  -- Element of nomenclature 245: whose head decides.
  Approval          smallint not null check (Approval between 1 and 3),
  Status            smallint not null check (Status between 1 and 4),
  ConfirmedFrom     bigint references Employees (Employee),
  ConfermedOn       timestamptz,
  UnConfirmedFrom   bigint references Employees (Employee),
  UnConfirmedOn     timestamptz,
  -- The head in whose place a deputy decided.
  OnBehalfOf        bigint references Employees (Employee),
  primary key (PurchaseOrderId, PurchaseOrderVer, ConfirmationLevel),
  foreign key (PurchaseOrderId, PurchaseOrderVer) references PurchaseOrder (POIdNumber, POVersion)
);
