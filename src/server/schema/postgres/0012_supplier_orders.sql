-- 0012_supplier_orders.sql
-- Why: orders placed with suppliers, against which purchases are requested, and their approval. What an order leaves is
-- never stored: it is derived from the requests and deliveries against it.

create table SuppManifacOrder (
  IdNumber            integer not null primary key,
  DocumentDate        date not null,
  Description         text,
  Description2        text,
  Rationale           text,
  Rationale2          text,
  FromDate            date,
  ToDate              date,
  CostCenter          bigint not null references CostCenters (CostCenter),
  KindSupply          smallint not null references KindSupplies (Code),
  Supplier            bigint not null references Partners (Partner),
  ContractId          integer references SuppliesContracts (IdNumber),
  -- Element of nomenclature 250: 1 no, 2 yes.
  IncTranspInPrice    smallint not null default 1 check (IncTranspInPrice in (1, 2)),
  KindCurrency        smallint not null references Currencies (Code),
  RateOfExchange      numeric(19,7) not null default 1 check (RateOfExchange > 0),
  SumManifacOrder     numeric(19,4) not null default 0,
  CurrSumManifacOrder numeric(19,4) not null default 0,
  Notifier            bigint not null references Employees (Employee),
  CreatedFrom         text collate "C" not null,
  CreatedOn           timestamptz not null,
  AmendFrom           text collate "C",
  AmendOn             timestamptz,
  Status              smallint not null check (Status between 0 and 7),
  AnnulFrom           text collate "C",
  AnnulOn             timestamptz,
  PrevYearId          integer,
  -- How many times the order was sent for approval, by whom and when last.
  SendingNumber       integer not null default 0,
  SentFrom            text collate "C",
  SentOn              timestamptz
);
create index SuppManifacOrderByCreator on SuppManifacOrder (CreatedFrom, IdNumber);
create index SuppManifacOrderByNotifier on SuppManifacOrder (Notifier, IdNumber);
create index SuppManifacOrderByCostCenter on SuppManifacOrder (CostCenter, IdNumber);
create index SuppManifacOrderBySupplier on SuppManifacOrder (Supplier, Status, IdNumber);

create table SuppManOrderDet (
  SuppManOrderId integer not null references SuppManifacOrder (IdNumber),
  RowNumber      smallint not null,
  SerialNumber   bigint not null references BaseSupplyList (SerialNumber),
  Measure        smallint not null references Measures (Code),
  -- Counted in the smallest unit of the measure's block.
  Quantity       double precision not null check (Quantity >= 0),
  RowNumerator   integer not null check (RowNumerator > 0),
  Numerator      integer not null check (Numerator > 0),
  InventoryId    integer references MaterialStocks (IdNumber),
  ServiceCode    integer references Services (Code),
  Remarks        text,
  Remarks2       text,
  primary key (SuppManOrderId, RowNumber)
);
-- An order holds an entry once.
create unique index SuppManOrderDetByEntry on SuppManOrderDet (SuppManOrderId, SerialNumber);
create index SuppManOrderDetBySerial on SuppManOrderDet (SerialNumber, SuppManOrderId);

create table SuppManOrderAdmin (
  SuppManOrderId    integer not null references SuppManifacOrder (IdNumber),
  ConfirmationLevel smallint not null,
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
  primary key (SuppManOrderId, ConfirmationLevel)
);
