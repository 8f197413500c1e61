-- 0001_system.sql
-- Why: everything a server needs before the first document: the company, its users and their rights,
-- sessions, the keys under which changes were carried out, history, parameters and nomenclatures.
-- FoldName beside Name is its fold (packet/fold.h), by which it is searched and ordered.

create table Company (
  Id                integer not null primary key check (Id = 1),
  Name              text not null,
  ZoneOffsetMinutes integer not null default 120,
  SummerTime        smallint not null check (SummerTime in (0, 1)) default 1,
  LanguageName      text not null default 'Български',
  LanguageName2     text,
  MultiLanguage     smallint not null check (MultiLanguage in (0, 1)) default 0,
  Demonstration     smallint not null check (Demonstration in (0, 1)) default 0,
  -- Rises with every change of a user or of rights, so that a server may keep what it read.
  RightsVersion     bigint not null default 1
);
insert into Company (Id, Name) values (1, '');

create table WSysUsers (
  ShortName     text collate "C" not null primary key,
  UserName      text not null,
  UserName2     text,
  FoldShortName text collate "C" not null,
  FoldUserName  text collate "C" not null,
  FoldUserName2 text collate "C",
  -- Level of the user: 0 sees everything, 3 and more need an employee record.
  Category      smallint not null,
  Language      smallint not null default 1,
  PasswordHash  text,
  Blocked       smallint not null check (Blocked in (0, 1)) default 0,
  RightsVersion bigint not null default 1
);
create unique index WSysUsersByFoldShortName on WSysUsers (FoldShortName);
create index WSysUsersByFoldUserName on WSysUsers (FoldUserName, ShortName);
create index WSysUsersByFoldUserName2 on WSysUsers (FoldUserName2 nulls first, ShortName);

create table UserRights (
  Login  text collate "C" not null references WSysUsers (ShortName) on delete cascade,
  Point  integer not null,
  -- Bits: open 1, edit 2, insert 4, delete 8.
  Rights smallint not null,
  primary key (Login, Point)
);

create table Employees (
  Employee  bigint not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text collate "C" not null,
  FoldName2 text collate "C",
  -- Two employees may have one login; such a login has no current employee.
  Login     text collate "C" references WSysUsers (ShortName) on delete set null
);
create index EmployeesByFoldName on Employees (FoldName, Employee);
create index EmployeesByFoldName2 on Employees (FoldName2 nulls first, Employee);
create index EmployeesByLogin on Employees (Login);

create table Session (
  TicketHash     text collate "C" not null primary key,
  SessionName    text not null,
  Login          text collate "C" not null,
  MachineName    text not null,
  ProgramVersion text not null,
  StartedOn      timestamptz not null,
  LastSeen       timestamptz not null,
  EndedOn        timestamptz
);
create index SessionByLogin on Session (Login);
create index SessionByLastSeen on Session (LastSeen);

-- Failed logins of a login or of a machine, told apart by the prefix of Subject.
create table LoginAttempt (
  Subject      text collate "C" not null primary key,
  Failures     integer not null,
  LastFailedOn timestamptz not null,
  LockedUntil  timestamptz
);

create table ClientKey (
  Login       text collate "C" not null,
  Key         text collate "C" not null,
  RequestHash text not null,
  Answer      text not null,
  CreatedOn   timestamptz not null,
  primary key (Login, Key)
);
create index ClientKeyByCreatedOn on ClientKey (CreatedOn);

create table History (
  Id          bigint generated always as identity primary key,
  TableName   text collate "C" not null,
  RowKey      text collate "C" not null,
  ColumnName  text not null,
  OldValue    text,
  NewValue    text,
  ChangedBy   text not null,
  ChangedOn   timestamptz not null,
  MachineName text not null,
  Kind        text not null check (Kind in ('I', 'U', 'D'))
);
create index HistoryByRow on History (TableName, RowKey, Id);

create table Params (
  ParamGroup integer not null,
  Number     integer not null,
  Value      text,
  primary key (ParamGroup, Number)
);

create table NomIn (
  Nomenclature integer not null,
  Element      bigint not null,
  Name         text not null,
  Name2        text,
  Name3        text,
  Name4        text,
  Name5        text,
  Name6        text,
  Name7        text,
  Name8        text,
  Name9        text,
  Name10       text,
  FoldName     text collate "C" not null,
  FoldName2    text collate "C",
  primary key (Nomenclature, Element)
);

insert into NomIn (Nomenclature, Element, Name, Name2, FoldName, FoldName2)
select column1, column2, column3, column4, orvane_fold(column3), orvane_fold(column4) from (values
  (58, 1, 'Материал', 'Material'),
  (58, 2, 'Услуга', 'Service'),
  (90, 1, 'По списък', 'By list'),
  (90, 2, 'По списък на дата', 'By list on a date'),
  (90, 3, 'По списък до дата', 'By list up to a date'),
  (244, 1, 'Поръчки към доставчици', 'Supplier orders'),
  (244, 2, 'Искания за покупка', 'Purchase requests'),
  (244, 3, 'Доставки', 'Deliveries'),
  (244, 4, 'Фактури от доставчици', 'Supplier invoices'),
  (245, 1, 'Център за разход', 'Cost centre'),
  (245, 2, 'Отдел', 'Section'),
  (245, 3, 'Дирекция', 'Department'),
  (246, 1, 'Финансов', 'Finance'),
  (246, 2, 'Снабдяване', 'Supplies'),
  (246, 3, 'Производствен', 'Production'),
  (246, 4, 'Административен', 'Administration'),
  (247, 1, 'Фактура', 'Invoice'),
  (247, 2, 'Дебитно известие', 'Debit note'),
  (247, 3, 'Кредитно известие', 'Credit note'),
  (247, 4, 'Проформа фактура', 'Pro-forma invoice'),
  (249, 0, 'Анулиран', 'Annulled'),
  (249, 1, 'Отхвърлен', 'Rejected'),
  (249, 2, 'Въведен', 'Entered'),
  (249, 3, 'За одобрение', 'For approval'),
  (249, 4, 'Частично одобрен', 'Partly approved'),
  (249, 5, 'Одобрен', 'Approved'),
  (249, 6, 'В изпълнение', 'Being fulfilled'),
  (249, 7, 'Приключен', 'Completed'),
  (250, 1, 'Не', 'No'),
  (250, 2, 'Да', 'Yes'),
  (251, 1, 'Отхвърлен', 'Rejected'),
  (251, 2, 'Чака одобрение', 'Waiting'),
  (251, 3, 'Одобрен', 'Approved'),
  (251, 4, 'Одобрен служебно', 'Approved by service'),
  (252, 0, 'Анулиран', 'Annulled'),
  (252, 1, 'Блокиран', 'Blocked'),
  (252, 2, 'Въведен', 'Entered'),
  (252, 3, 'Потвърден', 'Confirmed'),
  (252, 4, 'Частично одобрен', 'Partly approved'),
  (252, 5, 'Одобрен', 'Approved'),
  (252, 6, 'В изпълнение', 'Being fulfilled'),
  (252, 7, 'Приключен', 'Completed'),
  (283, 1, 'Цена от списъка за доставка', 'Price of the supply list'),
  (283, 2, 'Цена от последната доставка', 'Price of the last delivery'),
  (292, 1, 'Първоначално оценяване', 'Initial evaluation'),
  (292, 2, 'Периодично оценяване', 'Periodic evaluation')) as list;

-- What was written into history stands.
create function HistoryStands() returns trigger language plpgsql as $$
begin
  raise exception 'history cannot be changed';
end $$;
create trigger HistoryIsNotUpdated before update or delete on History
  for each row execute function HistoryStands();
create trigger HistoryIsNotTruncated before truncate on History
  for each statement execute function HistoryStands();

-- Versions of rights rise with what they stand for, whoever changes it.
create function RightsMoved() returns trigger language plpgsql as $$
begin
  update WSysUsers set RightsVersion = RightsVersion + 1
    where ShortName in (
      case when tg_op <> 'INSERT' then old.Login end,
      case when tg_op <> 'DELETE' then new.Login end);
  return null;
end $$;
create trigger UserRightsMoved after insert or update or delete on UserRights
  for each row execute function RightsMoved();
create function UserMoved() returns trigger language plpgsql as $$
begin
  new.RightsVersion := old.RightsVersion + 1;
  return new;
end $$;
create trigger UserChanged before update of Category, Language, PasswordHash, Blocked on WSysUsers
  for each row execute function UserMoved();
create function CompanyRightsMoved() returns trigger language plpgsql as $$
begin
  update Company set RightsVersion = RightsVersion + 1;
  return null;
end $$;
create trigger UsersMoved after insert or update or delete on WSysUsers
  for each statement execute function CompanyRightsMoved();
