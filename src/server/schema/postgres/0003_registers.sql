-- 0003_registers.sql
-- Why: what documents choose from: the organisation and who may request and decide in it, partners and
-- currencies, units, materials and services, and the supply lists.

-- Organisation

create table CostCenters (
  CostCenter bigint not null primary key,
  Name       text not null,
  Name2      text,
  FoldName   text collate "C" not null,
  FoldName2  text collate "C",
  -- Employee who heads it.
  Chief      bigint references Employees (Employee)
);
create index CostCentersByFoldName on CostCenters (FoldName, CostCenter);
create index CostCentersByFoldName2 on CostCenters (FoldName2 nulls first, CostCenter);
create index CostCentersByChief on CostCenters (Chief);

create table Sections (
  Section   bigint not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text collate "C" not null,
  FoldName2 text collate "C",
  Chief     bigint references Employees (Employee)
);
create index SectionsByFoldName on Sections (FoldName, Section);
create index SectionsByFoldName2 on Sections (FoldName2 nulls first, Section);
create index SectionsByChief on Sections (Chief);

create table Structure (
  CostCenter bigint not null primary key references CostCenters (CostCenter),
  Department smallint references Department (Code),
  Section    bigint references Sections (Section)
);
create index StructureByDepartment on Structure (Department);
create index StructureBySection on Structure (Section);

create table StructureDeputies (
  IdNumber           integer not null primary key,
  -- Element of nomenclature 245: 1 cost centre, 2 section, 3 department; its column below is filled.
  StructuralUnitType smallint not null check (StructuralUnitType in (1, 2, 3)),
  Department         smallint references Department (Code),
  Section            bigint references Sections (Section),
  CostCenter         bigint references CostCenters (CostCenter)
);
create index StructureDeputiesByDepartment on StructureDeputies (Department);
create index StructureDeputiesBySection on StructureDeputies (Section);
create index StructureDeputiesByCostCenter on StructureDeputies (CostCenter);

create table StructDepDates (
  StructDepId integer not null references StructureDeputies (IdNumber),
  FromDate    date not null,
  -- Empty: until further notice.
  ToDate      date,
  Deputy      bigint not null references Employees (Employee),
  primary key (StructDepId, FromDate)
);
create index StructDepDatesByDeputy on StructDepDates (Deputy);

create table AdmissibleNotifiers (
  CostCenter bigint not null references CostCenters (CostCenter),
  Notifier   bigint not null references Employees (Employee),
  primary key (CostCenter, Notifier)
);
create index AdmissibleNotifiersByNotifier on AdmissibleNotifiers (Notifier, CostCenter);

create table KindSupplies (
  Code      smallint not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text collate "C" not null,
  FoldName2 text collate "C"
);
create index KindSuppliesByFoldName on KindSupplies (FoldName, Code);
create index KindSuppliesByFoldName2 on KindSupplies (FoldName2 nulls first, Code);

create table LevelsApproval (
  -- Element of nomenclature 244.
  KindRegister integer not null,
  KindSupply   smallint not null references KindSupplies (Code),
  Level        integer not null,
  FromSum      numeric(19,4) not null,
  ToSum        numeric(19,4) not null,
  -- Element of nomenclature 245: whose head decides.
  Approval     smallint not null,
  primary key (KindRegister, KindSupply, Level, FromSum),
  constraint LevelsApprovalRange check (FromSum <= ToSum)
);
create index LevelsApprovalByKindSupply on LevelsApproval (KindSupply);

create table EmployeesFinSupp (
  -- Element of nomenclature 246.
  KindSection smallint not null,
  Employee    bigint not null references Employees (Employee),
  primary key (KindSection, Employee)
);
create index EmployeesFinSuppByEmployee on EmployeesFinSupp (Employee);

create table CapExPlan (
  Code           integer not null primary key,
  Name           text not null,
  Name2          text,
  FoldName       text collate "C" not null,
  FoldName2      text collate "C",
  InternalNumber text,
  FromDate       date not null,
  TimeLimit      date not null,
  CapSum         numeric(19,4) not null,
  Description    text,
  Description2   text
);
create index CapExPlanByFoldName on CapExPlan (FoldName, Code);
create index CapExPlanByFoldName2 on CapExPlan (FoldName2 nulls first, Code);

-- Partners, currencies, and what describes their documents

create table Currencies (
  Code         smallint not null primary key,
  Name         text not null,
  Name2        text,
  FoldName     text collate "C" not null,
  FoldName2    text collate "C",
  -- Three letters of ISO 4217.
  CurrencyCode text not null
);
create index CurrenciesByFoldName on Currencies (FoldName, Code);
create index CurrenciesByFoldName2 on Currencies (FoldName2 nulls first, Code);

create table TownsAndVillages (
  Code      integer not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text collate "C" not null,
  FoldName2 text collate "C"
);
create index TownsAndVillagesByFoldName on TownsAndVillages (FoldName, Code);
create index TownsAndVillagesByFoldName2 on TownsAndVillages (FoldName2 nulls first, Code);

create table KindSupplyLists (
  Code      smallint not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text collate "C" not null,
  FoldName2 text collate "C"
);
create index KindSupplyListsByFoldName on KindSupplyLists (FoldName, Code);
create index KindSupplyListsByFoldName2 on KindSupplyLists (FoldName2 nulls first, Code);

create table SupplyInvoiceDescr (
  Code           smallint not null primary key,
  Name           text not null,
  Name2          text,
  FoldName       text collate "C" not null,
  FoldName2      text collate "C",
  KindInvoice    smallint not null,
  AdvanceInvoice smallint not null check (AdvanceInvoice in (0, 1)) default 0,
  Respondent     smallint not null check (Respondent in (0, 1)) default 1
);
create index SupplyInvoiceDescrByFoldName on SupplyInvoiceDescr (FoldName, Code);
create index SupplyInvoiceDescrByFoldName2 on SupplyInvoiceDescr (FoldName2 nulls first, Code);

create table SupplyRequestDescr (
  Code      smallint not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text collate "C" not null,
  FoldName2 text collate "C"
);
create index SupplyRequestDescrByFoldName on SupplyRequestDescr (FoldName, Code);
create index SupplyRequestDescrByFoldName2 on SupplyRequestDescr (FoldName2 nulls first, Code);

create table SupplyArtVchDescr (
  Code      smallint not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text collate "C" not null,
  FoldName2 text collate "C"
);
create index SupplyArtVchDescrByFoldName on SupplyArtVchDescr (FoldName, Code);
create index SupplyArtVchDescrByFoldName2 on SupplyArtVchDescr (FoldName2 nulls first, Code);

create table FreeNomElements (
  FreeNomenclature integer not null,
  Element          bigint not null,
  Name             text not null,
  Name2            text,
  FoldName         text collate "C" not null,
  FoldName2        text collate "C",
  primary key (FreeNomenclature, Element)
);
create index FreeNomElementsByFoldName on FreeNomElements (FreeNomenclature, FoldName, Element);
create index FreeNomElementsByFoldName2
  on FreeNomElements (FreeNomenclature, FoldName2 nulls first, Element);

create table Partners (
  Partner              bigint not null primary key,
  Name                 text not null,
  Name2                text,
  FoldName             text collate "C" not null,
  FoldName2            text collate "C",
  -- Number in the trade register.
  EIK                  text collate "C",
  PartnerTypeSupplier  smallint not null check (PartnerTypeSupplier in (0, 1)) default 0,
  SuppKindCurrency     smallint references Currencies (Code),
  KindSupplyChoice     smallint,
  KindSupplyList       smallint references KindSupplyLists (Code),
  SuppMaxTermOfPayment smallint,
  SupplyInvoiceDescr   smallint references SupplyInvoiceDescr (Code),
  Seat                 integer references TownsAndVillages (Code),
  Address              text,
  Address2             text,
  Telephone1           text,
  Telephone2           text,
  email                text
);
create index PartnersByFoldName on Partners (FoldName, Partner);
create index PartnersByFoldName2 on Partners (FoldName2 nulls first, Partner);
create index PartnersByEIK on Partners (EIK);

-- A rate holds from its date until the next one of the same bank.
create table RatesOfExchange (
  Partner       bigint not null references Partners (Partner),
  KindCurrency  smallint not null references Currencies (Code),
  RateDate      date not null,
  CurrencyRate1 numeric(19,7) not null check (CurrencyRate1 > 0),
  primary key (Partner, KindCurrency, RateDate)
);

-- Units, materials, services, stores

create table Measures (
  Code             smallint not null primary key,
  Name             text not null,
  Name2            text,
  FoldName         text collate "C" not null,
  FoldName2        text collate "C",
  -- Size in the smallest unit of the block of hundred codes.
  Numerator        integer not null check (Numerator > 0),
  OrdinaryFraction smallint not null check (OrdinaryFraction in (0, 1)) default 0
);
create index MeasuresByFoldName on Measures (FoldName, Code);
create index MeasuresByFoldName2 on Measures (FoldName2 nulls first, Code);

create table MaterialStocks (
  IdNumber          integer not null primary key,
  Name              text not null,
  Name2             text,
  FoldName          text collate "C" not null,
  FoldName2         text collate "C",
  Measure           smallint not null references Measures (Code),
  IncomeMeasure     smallint references Measures (Code),
  BarCodeMeasure    smallint references Measures (Code),
  RoundQuantity     smallint,
  SuppForbiddenFrom date,
  SuppActiveFrom    date,
  -- Empty: the usual percentage.
  VATPercent        numeric(19,4)
);
create index MaterialStocksByFoldName on MaterialStocks (FoldName, IdNumber);
create index MaterialStocksByFoldName2 on MaterialStocks (FoldName2 nulls first, IdNumber);

create table Services (
  Code          integer not null primary key,
  Name          text not null,
  Name2         text,
  FoldName      text collate "C" not null,
  FoldName2     text collate "C",
  Measure       smallint references Measures (Code),
  RoundQuantity smallint,
  VATPercent    numeric(19,4)
);
create index ServicesByFoldName on Services (FoldName, Code);
create index ServicesByFoldName2 on Services (FoldName2 nulls first, Code);

create table Stores (
  Code      integer not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text collate "C" not null,
  FoldName2 text collate "C"
);
create index StoresByFoldName on Stores (FoldName, Code);
create index StoresByFoldName2 on Stores (FoldName2 nulls first, Code);

create table UserAccessToStores (
  ForUser text collate "C" not null references WSysUsers (ShortName) on delete cascade,
  Store   integer not null references Stores (Code),
  primary key (ForUser, Store)
);
create index UserAccessToStoresByStore on UserAccessToStores (Store);

create table KindDocInventory (
  Code          smallint not null primary key,
  Name          text not null,
  Name2         text,
  FoldName      text collate "C" not null,
  FoldName2     text collate "C",
  -- 1 receipt.
  KindOperation smallint not null
);
create index KindDocInventoryByFoldName on KindDocInventory (FoldName, Code);
create index KindDocInventoryByFoldName2 on KindDocInventory (FoldName2 nulls first, Code);

-- Supply lists. Prices are in national currency, for the size of the entry's own unit.

-- One row at most.
create table DescrBaseSupplyList (
  Id              integer not null default 1 primary key check (Id = 1),
  -- 1: entries are called as their materials and services are.
  IdentityWithNom smallint not null check (IdentityWithNom in (0, 1))
);

create table BaseSupplyList (
  SerialNumber       bigint not null primary key,
  Name               text,
  Name2              text,
  FoldName           text collate "C",
  FoldName2          text collate "C",
  -- 1 material, 2 service.
  Kind               smallint not null check (Kind in (1, 2)),
  InventoryCode      integer references MaterialStocks (IdNumber),
  ServiceCode        integer references Services (Code),
  Measure            smallint not null references Measures (Code),
  Price              numeric(19,4),
  -- The name the entry goes by, see DescrBaseSupplyList; kept by the triggers below. Whoever loads
  -- many entries may write all four at once.
  EffectiveName      text,
  EffectiveName2     text,
  FoldEffectiveName  text collate "C",
  FoldEffectiveName2 text collate "C"
);
create index BaseSupplyListByFoldName on BaseSupplyList (FoldName nulls first, SerialNumber);
create index BaseSupplyListByFoldName2 on BaseSupplyList (FoldName2 nulls first, SerialNumber);
create index BaseSupplyListByFoldEffectiveName
  on BaseSupplyList (FoldEffectiveName nulls first, SerialNumber);
create index BaseSupplyListByFoldEffectiveName2
  on BaseSupplyList (FoldEffectiveName2 nulls first, SerialNumber);
create index BaseSupplyListByInventoryCode on BaseSupplyList (InventoryCode);
create index BaseSupplyListByServiceCode on BaseSupplyList (ServiceCode);

create table BaseSupplyListDates (
  SerialNumber      bigint not null references BaseSupplyList (SerialNumber),
  AvailableFromDate date not null,
  Price             numeric(19,4),
  primary key (SerialNumber, AvailableFromDate)
);
create index BaseSupplyListDatesByDate on BaseSupplyListDates (AvailableFromDate, SerialNumber);

create table SupplyLists (
  KindList     smallint not null references KindSupplyLists (Code),
  SerialNumber bigint not null references BaseSupplyList (SerialNumber),
  Measure      smallint not null references Measures (Code),
  Price        numeric(19,4),
  primary key (KindList, SerialNumber)
);
create index SupplyListsBySerialNumber on SupplyLists (SerialNumber);

create table SupplyListsDates (
  KindList          smallint not null,
  SerialNumber      bigint not null,
  AvailableFromDate date not null,
  Price             numeric(19,4),
  primary key (KindList, SerialNumber, AvailableFromDate),
  foreign key (KindList, SerialNumber) references SupplyLists (KindList, SerialNumber)
);
create index SupplyListsDatesByDate on SupplyListsDates (KindList, AvailableFromDate, SerialNumber);

-- Entries that a partner supplies.
create table PartnerSupplyEntries (
  Partner      bigint not null references Partners (Partner),
  SerialNumber bigint not null references BaseSupplyList (SerialNumber),
  FromDate     date not null,
  -- Empty: until further notice.
  ToDate       date,
  primary key (Partner, SerialNumber, FromDate)
);
create index PartnerSupplyEntriesBySerialNumber on PartnerSupplyEntries (SerialNumber);

create view SupplyEntryNames as
select b.SerialNumber, b.Kind, b.InventoryCode, b.ServiceCode,
  case when d.IdentityWithNom = 1
    then case b.Kind when 1 then m.Name when 2 then s.Name end else b.Name end as EntryName,
  case when d.IdentityWithNom = 1
    then case b.Kind when 1 then m.Name2 when 2 then s.Name2 end else b.Name2 end as EntryName2,
  case when d.IdentityWithNom = 1
    then case b.Kind when 1 then m.FoldName when 2 then s.FoldName end else b.FoldName end
    as FoldEntryName,
  case when d.IdentityWithNom = 1
    then case b.Kind when 1 then m.FoldName2 when 2 then s.FoldName2 end else b.FoldName2 end
    as FoldEntryName2
from BaseSupplyList b
left join MaterialStocks m on m.IdNumber = b.InventoryCode
left join Services s on s.Code = b.ServiceCode
left join DescrBaseSupplyList d on 1 = 1;

create function SupplyEntryMoved() returns trigger language plpgsql as $$
begin
  update BaseSupplyList set EffectiveName = n.EntryName, EffectiveName2 = n.EntryName2,
    FoldEffectiveName = n.FoldEntryName, FoldEffectiveName2 = n.FoldEntryName2
  from SupplyEntryNames n where n.SerialNumber = BaseSupplyList.SerialNumber
    and BaseSupplyList.SerialNumber = new.SerialNumber;
  return null;
end $$;
create trigger SupplyEntryAdded after insert on BaseSupplyList
  for each row when (new.FoldEffectiveName is null) execute function SupplyEntryMoved();
create trigger SupplyEntryChanged after update
  of Name, Name2, FoldName, FoldName2, Kind, InventoryCode, ServiceCode on BaseSupplyList
  for each row execute function SupplyEntryMoved();
create function SupplyMaterialMoved() returns trigger language plpgsql as $$
begin
  update BaseSupplyList set EffectiveName = n.EntryName, EffectiveName2 = n.EntryName2,
    FoldEffectiveName = n.FoldEntryName, FoldEffectiveName2 = n.FoldEntryName2
  from SupplyEntryNames n where n.SerialNumber = BaseSupplyList.SerialNumber
    and BaseSupplyList.InventoryCode = new.IdNumber;
  return null;
end $$;
create trigger SupplyMaterialNamed after update of Name, Name2, FoldName, FoldName2 on MaterialStocks
  for each row execute function SupplyMaterialMoved();
create function SupplyServiceMoved() returns trigger language plpgsql as $$
begin
  update BaseSupplyList set EffectiveName = n.EntryName, EffectiveName2 = n.EntryName2,
    FoldEffectiveName = n.FoldEntryName, FoldEffectiveName2 = n.FoldEntryName2
  from SupplyEntryNames n where n.SerialNumber = BaseSupplyList.SerialNumber
    and BaseSupplyList.ServiceCode = new.Code;
  return null;
end $$;
create trigger SupplyServiceNamed after update of Name, Name2, FoldName, FoldName2 on Services
  for each row execute function SupplyServiceMoved();
create function SupplyNamingMoved() returns trigger language plpgsql as $$
begin
  update BaseSupplyList set EffectiveName = n.EntryName, EffectiveName2 = n.EntryName2,
    FoldEffectiveName = n.FoldEntryName, FoldEffectiveName2 = n.FoldEntryName2
  from SupplyEntryNames n where n.SerialNumber = BaseSupplyList.SerialNumber;
  return null;
end $$;
create trigger SupplyNamingAdded after insert on DescrBaseSupplyList
  for each row execute function SupplyNamingMoved();
create trigger SupplyNamingChanged after update on DescrBaseSupplyList
  for each row execute function SupplyNamingMoved();
create trigger SupplyNamingDeleted after delete on DescrBaseSupplyList
  for each row execute function SupplyNamingMoved();
