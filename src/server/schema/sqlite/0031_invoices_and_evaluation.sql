-- 0031_invoices_and_evaluation.sql
-- Why: the search catalogue lists these registers; a search in one that nobody has filled yet finds nothing instead of
-- failing.

create table CriteriaEvalSupp (
  CriteriaType integer not null,
  SerialNumber integer not null,
  Numeration text,
  FoldNumeration text generated always as (orvane_fold(Numeration)) stored,
  Name text not null,
  FoldName text not null generated always as (orvane_fold(Name)) stored,
  Name2 text,
  FoldName2 text generated always as (orvane_fold(Name2)) stored,
  HeadPoint integer not null,
  ToHPSerialNumber integer,
  ToBeEvaluated integer not null,
  EvalFixedPoints integer not null,
  CountPoints integer,
  MinCountPoints integer,
  MaxCountPoints integer,
  primary key (CriteriaType, SerialNumber)
) strict;

create table QuestionInitEvalMap (
  IdNumber integer not null,
  ForDate integer,
  Supplier integer,
  SupplierName text not null,
  FoldSupplierName text not null generated always as (orvane_fold(SupplierName)) stored,
  SupplierName2 text,
  FoldSupplierName2 text generated always as (orvane_fold(SupplierName2)) stored,
  Seat integer,
  Address text,
  FoldAddress text generated always as (orvane_fold(Address)) stored,
  Address2 text,
  FoldAddress2 text generated always as (orvane_fold(Address2)) stored,
  ContactPerson text,
  FoldContactPerson text generated always as (orvane_fold(ContactPerson)) stored,
  ContactPerson2 text,
  FoldContactPerson2 text generated always as (orvane_fold(ContactPerson2)) stored,
  Phone1 text,
  FoldPhone1 text generated always as (orvane_fold(Phone1)) stored,
  Phone2 text,
  FoldPhone2 text generated always as (orvane_fold(Phone2)) stored,
  email text,
  Foldemail text generated always as (orvane_fold(email)) stored,
  primary key (IdNumber)
) strict;

create table SuppInvRegister (
  IdNumber integer not null,
  JoinedDate integer not null,
  Supplier integer not null,
  InvoiceNumberDigit integer,
  InvoiceNumberSymbol text,
  FoldInvoiceNumberSymbol text generated always as (orvane_fold(InvoiceNumberSymbol)) stored,
  InvoiceDate integer not null,
  DocumentType integer,
  KindSupply integer,
  CostCenter integer,
  KindCurrency integer,
  CurrSumWithVATRb integer,
  SumWithoutVATRb integer,
  OutsideTolerance integer not null,
  Maturity integer,
  Status integer not null,
  CreatedFrom text,
  FoldCreatedFrom text generated always as (orvane_fold(CreatedFrom)) stored,
  CreatedOn integer,
  AnnulFrom text,
  FoldAnnulFrom text generated always as (orvane_fold(AnnulFrom)) stored,
  AnnulOn integer,
  primary key (IdNumber)
) strict;
