-- 0013_purchase_requests.sql
-- Why: purchase requests in versions, with their rows, delivery schedule, payment plan and approval rows.

create table PurchaseOrder (
  POIdNumber           integer not null,
  POVersion            integer not null check (POVersion between 1 and 255),
  DocumentDate         integer not null,
  Description          text,
  Description2         text,
  Rationale            text,
  Rationale2           text,
  CostCenter           integer not null references CostCenters (CostCenter),
  Notifier             integer not null references Employees (Employee),
  Supplier             integer references Partners (Partner),
  ContractId           integer references SuppliesContracts (IdNumber),
  KindSupply           integer not null references KindSupplies (Code),
  -- Element of nomenclature 250: 1 no, 2 yes.
  IncTranspInPrice     integer not null check (IncTranspInPrice in (1, 2)),
  KindCurrency         integer not null references Currencies (Code),
  RateOfExchange       integer not null check (RateOfExchange > 0),
  CurrSumPurchaseOrder integer not null default 0,
  SumPurchaseOrder     integer not null default 0,
  CreatedFrom          text not null,
  CreatedOn            integer not null,
  AmendFrom            text,
  AmendOn              integer,
  Status               integer not null check (Status between 1 and 7),
  AnnulFrom            text,
  AnnulOn              integer,
  OldVersion           integer not null default 0 check (OldVersion in (0, 1)),
  -- How many times this version was sent for approval, by whom and when last.
  SendingNumber        integer not null default 0,
  SentFrom             text,
  SentOn               integer,
  -- Under whose name a request without approval levels was approved.
  ServiceEmployee      integer references Employees (Employee),
  primary key (POIdNumber, POVersion)
) strict, without rowid;
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
  PurchaseOrderVer   integer not null,
  RowNumber          integer not null check (RowNumber > 0),
  SerialNumber       integer not null references BaseSupplyList (SerialNumber),
  InventoryId        integer references MaterialStocks (IdNumber),
  ServiceCode        integer references Services (Code),
  Measure            integer not null references Measures (Code),
  SuppManifacOrderId integer references SuppManifacOrder (IdNumber),
  -- Counted in the smallest unit of the measure's block.
  Quantity           real not null check (Quantity >= 0),
  -- Size of the entry's own unit, to which its price belongs, and of the row's unit.
  Numerator          integer not null check (Numerator > 0),
  RowNumerator       integer not null check (RowNumerator > 0),
  CurrSumWithoutVAT  integer not null,
  Remarks            text,
  Remarks2           text,
  primary key (PurchaseOrderId, PurchaseOrderVer, RowNumber),
  foreign key (PurchaseOrderId, PurchaseOrderVer) references PurchaseOrder (POIdNumber, POVersion)
) strict, without rowid;
-- What an order leaves, and the report's filters by order and by entry.
create index PurchaseOrderDetByOrder on PurchaseOrderDet (SuppManifacOrderId, SerialNumber, PurchaseOrderId)
  where SuppManifacOrderId is not null;
create index PurchaseOrderDetBySerial on PurchaseOrderDet (SerialNumber, PurchaseOrderId);

create table PurchaseOrderDel (
  PurchaseOrderId  integer not null,
  PurchaseOrderVer integer not null,
  DeliveryDate     integer not null,
  DateOfLoading    integer,
  Delivered        integer not null default 0 check (Delivered in (0, 1)),
  primary key (PurchaseOrderId, PurchaseOrderVer, DeliveryDate),
  foreign key (PurchaseOrderId, PurchaseOrderVer) references PurchaseOrder (POIdNumber, POVersion)
) strict, without rowid;

create table PurchaseOrderPayPl (
  PurchaseOrderId  integer not null,
  PurchaseOrderVer integer not null,
  RowNumber        integer not null check (RowNumber between 1 and 255),
  InvoiceDate      integer not null,
  SumWithVAT       integer not null,
  AdvancePayment   integer not null default 0 check (AdvancePayment in (0, 1)),
  AdvanceStatement integer not null default 0 check (AdvanceStatement in (0, 1)),
  PaymentDate      integer not null,
  SupplyInvoiceId  integer,
  primary key (PurchaseOrderId, PurchaseOrderVer, RowNumber),
  foreign key (PurchaseOrderId, PurchaseOrderVer) references PurchaseOrder (POIdNumber, POVersion)
) strict, without rowid;

create table PurchaseOrderAdm (
  PurchaseOrderId   integer not null,
  PurchaseOrderVer  integer not null,
  ConfirmationLevel integer not null check (ConfirmationLevel between 1 and 255),
  SendingNumber     integer not null,
  -- Element of nomenclature 245: whose head decides.
  Approval          integer not null check (Approval between 1 and 3),
  Status            integer not null check (Status between 1 and 4),
  ConfirmedFrom     integer references Employees (Employee),
  ConfermedOn       integer,
  UnConfirmedFrom   integer references Employees (Employee),
  UnConfirmedOn     integer,
  -- The head in whose place a deputy decided.
  OnBehalfOf        integer references Employees (Employee),
  primary key (PurchaseOrderId, PurchaseOrderVer, ConfirmationLevel),
  foreign key (PurchaseOrderId, PurchaseOrderVer) references PurchaseOrder (POIdNumber, POVersion)
) strict, without rowid;
