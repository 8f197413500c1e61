-- 0031_invoices_and_evaluation.sql
-- Why: the search catalogue lists these registers; a search in one that nobody has filled yet finds nothing instead of
-- failing.

create table CriteriaEvalSupp (
  CriteriaType smallint not null,
  SerialNumber integer not null,
  Numeration text collate "C",
  FoldNumeration text collate "C" generated always as (orvane_fold(Numeration)) stored,
  Name text collate "C" not null,
  FoldName text collate "C" not null generated always as (orvane_fold(Name)) stored,
  Name2 text collate "C",
  FoldName2 text collate "C" generated always as (orvane_fold(Name2)) stored,
  HeadPoint smallint not null,
  ToHPSerialNumber integer,
  ToBeEvaluated smallint not null,
  EvalFixedPoints smallint not null,
  CountPoints smallint,
  MinCountPoints smallint,
  MaxCountPoints smallint,
  primary key (CriteriaType, SerialNumber)
);

create table QuestionInitEvalMap (
  IdNumber integer not null,
  ForDate date,
  Supplier bigint,
  SupplierName text collate "C" not null,
  FoldSupplierName text collate "C" not null generated always as (orvane_fold(SupplierName)) stored,
  SupplierName2 text collate "C",
  FoldSupplierName2 text collate "C" generated always as (orvane_fold(SupplierName2)) stored,
  Seat integer,
  Address text collate "C",
  FoldAddress text collate "C" generated always as (orvane_fold(Address)) stored,
  Address2 text collate "C",
  FoldAddress2 text collate "C" generated always as (orvane_fold(Address2)) stored,
  ContactPerson text collate "C",
  FoldContactPerson text collate "C" generated always as (orvane_fold(ContactPerson)) stored,
  ContactPerson2 text collate "C",
  FoldContactPerson2 text collate "C" generated always as (orvane_fold(ContactPerson2)) stored,
  Phone1 text collate "C",
  FoldPhone1 text collate "C" generated always as (orvane_fold(Phone1)) stored,
  Phone2 text collate "C",
  FoldPhone2 text collate "C" generated always as (orvane_fold(Phone2)) stored,
  email text collate "C",
  Foldemail text collate "C" generated always as (orvane_fold(email)) stored,
  primary key (IdNumber)
);

create table SuppInvRegister (
  IdNumber integer not null,
  JoinedDate date not null,
  Supplier bigint not null,
  InvoiceNumberDigit bigint,
  InvoiceNumberSymbol text collate "C",
  FoldInvoiceNumberSymbol text collate "C" generated always as (orvane_fold(InvoiceNumberSymbol)) stored,
  InvoiceDate date not null,
  DocumentType smallint,
  KindSupply smallint,
  CostCenter bigint,
  KindCurrency smallint,
  CurrSumWithVATRb numeric(19,4),
  SumWithoutVATRb numeric(19,4),
  OutsideTolerance smallint not null,
  Maturity date,
  Status smallint not null,
  CreatedFrom text collate "C",
  FoldCreatedFrom text collate "C" generated always as (orvane_fold(CreatedFrom)) stored,
  CreatedOn timestamptz,
  AnnulFrom text collate "C",
  FoldAnnulFrom text collate "C" generated always as (orvane_fold(AnnulFrom)) stored,
  AnnulOn timestamptz,
  primary key (IdNumber)
);
