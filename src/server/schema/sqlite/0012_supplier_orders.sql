-- 0012_supplier_orders.sql
-- Why: orders placed with suppliers, against which purchases are requested, and their approval. What an order leaves is
-- never stored: it is derived from the requests and deliveries against it.

create table SuppManifacOrder (
  IdNumber            integer not null primary key,
  DocumentDate        integer not null,
  Description         text,
  Description2        text,
  Rationale           text,
  Rationale2          text,
  FromDate            integer,
  ToDate              integer,
  CostCenter          integer not null references CostCenters (CostCenter),
  KindSupply          integer not null references KindSupplies (Code),
  Supplier            integer not null references Partners (Partner),
  ContractId          integer references SuppliesContracts (IdNumber),
  -- Element of nomenclature 250: 1 no, 2 yes.
  IncTranspInPrice    integer not null default 1 check (IncTranspInPrice in (1, 2)),
  KindCurrency        integer not null references Currencies (Code),
  RateOfExchange      integer not null default 10000000 check (RateOfExchange > 0),
  SumManifacOrder     integer not null default 0,
  CurrSumManifacOrder integer not null default 0,
  Notifier            integer not null references Employees (Employee),
  CreatedFrom         text not null,
  CreatedOn           integer not null,
  AmendFrom           text,
  AmendOn             integer,
  Status              integer not null check (Status between 0 and 7),
  AnnulFrom           text,
  AnnulOn             integer,
  PrevYearId          integer,
  -- How many times the order was sent for approval, by whom and when last.
  SendingNumber       integer not null default 0,
  SentFrom            text,
  SentOn              integer
) strict;
create index SuppManifacOrderByCreator on SuppManifacOrder (CreatedFrom, IdNumber);
create index SuppManifacOrderByNotifier on SuppManifacOrder (Notifier, IdNumber);
create index SuppManifacOrderByCostCenter on SuppManifacOrder (CostCenter, IdNumber);
create index SuppManifacOrderBySupplier on SuppManifacOrder (Supplier, Status, IdNumber);

create table SuppManOrderDet (
  SuppManOrderId integer not null references SuppManifacOrder (IdNumber),
  RowNumber      integer not null,
  SerialNumber   integer not null references BaseSupplyList (SerialNumber),
  Measure        integer not null references Measures (Code),
  -- Counted in the smallest unit of the measure's block.
  Quantity       real not null check (Quantity >= 0),
  RowNumerator   integer not null check (RowNumerator > 0),
  Numerator      integer not null check (Numerator > 0),
  InventoryId    integer references MaterialStocks (IdNumber),
  ServiceCode    integer references Services (Code),
  Remarks        text,
  Remarks2       text,
  primary key (SuppManOrderId, RowNumber)
) strict, without rowid;
-- An order holds an entry once.
create unique index SuppManOrderDetByEntry on SuppManOrderDet (SuppManOrderId, SerialNumber);
create index SuppManOrderDetBySerial on SuppManOrderDet (SerialNumber, SuppManOrderId);

create table SuppManOrderAdmin (
  SuppManOrderId    integer not null references SuppManifacOrder (IdNumber),
  ConfirmationLevel integer not null,
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
  primary key (SuppManOrderId, ConfirmationLevel)
) strict, without rowid;
