-- 0010_documents.sql
-- Why: what all documents share: the counters of their identifiers, and who had a turn in the approval of which.

-- A number that a statement keeps for those behind it in its transaction: a load finds the document first.
create function orvane_keep(name text, value bigint) returns bigint language sql volatile as
  $keep$ select nullif(set_config('orvane.' || name, coalesce(value::text, ''), true), '')::bigint $keep$;
create function orvane_kept(name text) returns bigint language sql stable as
  $kept$ select nullif(current_setting('orvane.' || name, true), '')::bigint $kept$;

-- Identifiers of documents: one counter per table, gaps are allowed.
create table DocumentCounter (
  TableName  text collate "C" not null primary key,
  LastNumber integer not null default 0
);
insert into DocumentCounter (TableName) values ('PurchaseOrder'), ('SuppManifacOrder'), ('Deliveries'),
  ('SuppliesContracts');

-- Who has or had a turn in the approval of a document (kinds of nomenclature 244; version 0 where there are none). Rows
-- stay when approval rows go: who once had a document before him keeps seeing it.
create table ApprovalTurn (
  Employee        bigint not null references Employees (Employee),
  KindRegister    smallint not null,
  DocumentId      integer not null,
  DocumentVersion integer not null,
  primary key (Employee, KindRegister, DocumentId, DocumentVersion)
);
